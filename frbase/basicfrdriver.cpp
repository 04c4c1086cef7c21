#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Never freed: the device object and the host may read the driver's settings after the driver is gone.
BasicFrSettings* newDefaultSettings()
{
    return new BasicFrSettings;
}

const Log4Qt::Logger* loggerOf(const QString& driver)
{
    return Log4Qt::LogManager::logger(u"frdriver"_s, driver);
}

} // namespace

BasicFrDriver::BasicFrDriver()
    : port(nullptr)
    , settings(newDefaultSettings())
    , logger(loggerOf(QString()))
    , deviceInfo(QString(), QString())
{
    setInitialOptions();
}

BasicFrDriver::BasicFrDriver(
    AbstractSerialDriver* serialPort, const QString& loggerName, BasicFrSettings* frSettings)
    : port(serialPort)
    , settings(frSettings ? frSettings : newDefaultSettings())
    , logger(loggerOf(loggerName))
    , deviceInfo(QString(), QString())
{
    setInitialOptions();
    deviceInfo.setLoggerName(loggerName);
}

BasicFrDriver::~BasicFrDriver() = default;

void BasicFrDriver::setInitialOptions()
{
    using hw::fr::Option;
    setOption(Option(0x4), true);
    setOption(Option(0x80000), true);
    setOption(Option(0x1000000), true);
}
