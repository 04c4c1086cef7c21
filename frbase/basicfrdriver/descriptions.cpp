#include "frbase/basicfrdriver.h"

#include "host/records/deviceinfo.h"
#include "host/records/fiscalinfo.h"

#include <QString>

#include <iosfwd>

// === Descriptions and fiscal storage ===

QString BasicFrDriver::getDeviceStateDescription()
{
    return {};
}

QString BasicFrDriver::getFnStateDescription()
{
    return {};
}

void BasicFrDriver::printLastFnDocument() {}

void BasicFrDriver::printFnDocument(long /*number*/) {}

FnDocument BasicFrDriver::getFnDocument(unsigned long long /*number*/)
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
