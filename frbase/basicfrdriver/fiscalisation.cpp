#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"

#include <QDateTime>
#include <QList>
#include <QString>

// === Fiscalisation, clock, cliché and line ===

void BasicFrDriver::fiscalization(const QString& /*oldPassword*/, const QString& /*newPassword*/,
    const QString& /*registrationNumber*/, const QString& /*inn*/)
{
}

bool BasicFrDriver::setDateTime(const QDateTime& /*dateTime*/)
{
    return false;
}

QDateTime BasicFrDriver::getDateTime()
{
    return QDateTime::currentDateTime();
}

int BasicFrDriver::getHoursDifferenceLimit() const
{
    return -1;
}

bool BasicFrDriver::setCliche(const QList<QString>& /*lines*/)
{
    logger->info("Программирование клише не поддерживается устройством");
    return false;
}

bool BasicFrDriver::setTail(const QList<QString>& /*lines*/)
{
    logger->info("Программирование рекламного текста не поддерживается устройством");
    return false;
}

void BasicFrDriver::setDefaultBaudrate() {}

QString BasicFrDriver::getFrModeString() const
{
    return {};
}

void BasicFrDriver::printLogo(const Logo& /*logo*/) {}

void BasicFrDriver::ping() {}
