#include "frbase/basicfrdriver.h"

bool BasicFrDriver::setDateTime(const QDateTime& /*dateTime*/)
{
    return false;
}

QDateTime BasicFrDriver::getDateTime()
{
    return QDateTime::currentDateTime();
}

int BasicFrDriver::getDefaultPaymentType()
{
    return 1;
}

int BasicFrDriver::getMainPaymentType(int type)
{
    return type;
}

int BasicFrDriver::getDefaultTaxSystem() const
{
    return 0;
}

QList<hw::fr::common::TaxSystemType> BasicFrDriver::getAllTaxSystems() const
{
    return {};
}

void BasicFrDriver::fiscalization(const QString& /*oldPassword*/, const QString& /*newPassword*/,
    const QString& /*registrationNumber*/, const QString& /*inn*/)
{
}

void BasicFrDriver::registration(const QList<hw::fr::common::TaxSystemType>& /*taxSystems*/,
    hw::fr::common::TaxSystemType /*defaultTaxSystem*/, const QString& /*registrationNumber*/,
    const QList<RegistrationReason>& /*reasons*/, const QMap<QString, QVariant>& /*parameters*/)
{
}

bool BasicFrDriver::isRegistrationParametersChanged(const QMap<QString, QVariant>& /*parameters*/) const
{
    return false;
}

void BasicFrDriver::maintenance() {}

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
