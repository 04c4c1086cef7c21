#include "frbase/basicfrdriver.h"

#include <QJsonObject>

// === Annulment, users, national services ===

void BasicFrDriver::cancelCheckOpen(const FiscalDocument& /*document*/) {}

void BasicFrDriver::cancelCheckTotal(const FiscalDocument& /*document*/) {}

void BasicFrDriver::cancelCheckPay(const FiscalDocument& /*document*/) {}

QJsonObject BasicFrDriver::cancelCheckClose(const FiscalDocument& /*document*/)
{
    return {};
}

void BasicFrDriver::cashierLogin(const FrUser& /*user*/) {}

void BasicFrDriver::cashierLogout(const FrUser& /*user*/) {}

bool BasicFrDriver::useSKNO()
{
    return false;
}

bool BasicFrDriver::isSKNOConnectedToServer()
{
    return false;
}
