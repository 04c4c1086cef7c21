#include "frbase/basicfrdriver.h"

QString BasicFrDriver::getDeviceStateDescription()
{
    return {};
}

QString BasicFrDriver::getFnStateDescription()
{
    return {};
}

QString BasicFrDriver::getCountersDescription()
{
    return {};
}

QString BasicFrDriver::getParametersDescription()
{
    return {};
}

std::ostream& BasicFrDriver::getDump(int /*from*/, int /*to*/, std::ostream& out)
{
    return out;
}

DeviceInfo BasicFrDriver::getDeviceInfo()
{
    return deviceInfo;
}

BasicFrSettings* BasicFrDriver::getDeviceSettings() const
{
    return settings;
}

QString BasicFrDriver::getSendLinesTemplate() const
{
    return {};
}

QString BasicFrDriver::getFrModeString() const
{
    return {};
}

QString BasicFrDriver::getInn()
{
    return {};
}

QString BasicFrDriver::getFfdVersion()
{
    return {};
}

QVariant BasicFrDriver::queryData(const QString& /*query*/) const
{
    return {};
}

FnInfo BasicFrDriver::getFnInfo()
{
    return {};
}

FiscalInfo BasicFrDriver::getFiscalInfo(int /*documentNumber*/, bool /*lastOnly*/)
{
    return lastFiscalInfo;
}

OfdStatusInfo BasicFrDriver::getOfdStatusInfo()
{
    return {};
}

KkmRegisters BasicFrDriver::getKkmRegisterBeg()
{
    return {};
}

KkmRegisters BasicFrDriver::getKkmRegisterEnd()
{
    return {};
}

FnDocument BasicFrDriver::getFnDocument(unsigned long long /*number*/)
{
    return {};
}

int BasicFrDriver::getHoursDifferenceLimit() const
{
    return -1;
}
