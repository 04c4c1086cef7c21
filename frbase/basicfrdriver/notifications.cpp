#include "frbase/basicfrdriver.h"

#include <QString>
#include <QVariant>

// === Notifications and queries ===

void BasicFrDriver::setErrorNotificationHandler(const ErrorHandler& handler)
{
    ErrorHandler(handler).swap(errorNotificationHandler);
}

void BasicFrDriver::setOfdNotificationHandler(const OfdHandler& handler)
{
    OfdHandler(handler).swap(ofdNotificationHandler);
}

QVariant BasicFrDriver::queryData(const QString& /*query*/) const
{
    return {};
}

void BasicFrDriver::printLastZReport() {}
