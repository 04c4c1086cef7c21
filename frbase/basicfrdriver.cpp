#include "frbase/basicfrdriver.h"

#include "host/log/log4qt.h"
#include "host/records/frparameter.h"

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// Never freed: the device object and the host may read the driver's settings after the driver is gone.
BasicFrSettings* newDefaultSettings()
{
    return new BasicFrSettings;
}

constexpr quint64 bits(hw::fr::Option option)
{
    return static_cast<quint64>(option);
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

void BasicFrDriver::setErrorNotificationHandler(const ErrorHandler& handler)
{
    ErrorHandler(handler).swap(errorNotificationHandler);
}

void BasicFrDriver::setOfdNotificationHandler(const OfdHandler& handler)
{
    OfdHandler(handler).swap(ofdNotificationHandler);
}

bool BasicFrDriver::checkOption(hw::fr::Option option) const
{
    return (options & bits(option)) == bits(option);
}

void BasicFrDriver::setOption(hw::fr::Option option, bool value)
{
    if (settings->getDriverOptions().value(option, value))
        options |= bits(option);
    else
        options &= ~bits(option);
}

bool BasicFrDriver::useFN()
{
    return checkOption(hw::fr::Option::UseFn);
}

bool BasicFrDriver::setParams(const QList<FrParameter>& params)
{
    const auto narrowed = [](int value) { return static_cast<unsigned short>(value); };
    for (const FrParameter& param : params) {
        if (!legacySetParam(narrowed(param.getTableNum()), narrowed(param.getRowNum()),
                narrowed(param.getFieldNum()), param.getValue()))
            return false;
    }
    return true;
}

bool BasicFrDriver::legacySetParam(
    unsigned short /*table*/, unsigned short /*row*/, unsigned short /*field*/, const QString& /*value*/)
{
    return false;
}

void BasicFrDriver::setNumber(int newNumber)
{
    number = newNumber;
}

int BasicFrDriver::getNumber() const
{
    return number;
}

void BasicFrDriver::msleep(int ms) const
{
    if (ms > 0)
        usleep(static_cast<useconds_t>(ms) * 1000U);
}
