#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Never freed: the device object and the host may read the driver's settings after the driver is gone.
BasicFrSettings* newDefaultSettings()
{
    return new BasicFrSettings;
}

} // namespace

BasicFrDriver::BasicFrDriver()
    : BasicFrDriver(nullptr, QString(), nullptr)
{
}

BasicFrDriver::BasicFrDriver(
    AbstractSerialDriver* serialPort, const QString& loggerName, BasicFrSettings* frSettings)
    : port(serialPort)
    , settings(frSettings ? frSettings : newDefaultSettings())
    , logger(Log4Qt::LogManager::logger(u"frdriver"_s, loggerName))
    , deviceInfo(QString(), QString())
{
    setOption(hw::fr::Option::Bit2, true);
    setOption(hw::fr::Option::Bit19, true);
    setOption(hw::fr::Option::Bit24, true);
    deviceInfo.setLoggerName(loggerName);
}

BasicFrDriver::~BasicFrDriver() = default;
