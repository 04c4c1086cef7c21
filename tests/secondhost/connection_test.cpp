#include "frbase/basicfrdriver.h"
#include "host/abstractserialdriver.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

// A line whose device answers at one speed, or whose port fails.
class Line : public AbstractSerialDriver
{
public:
    int getPortKind() override { return 1; }
    void setBaudRate(int baudRate) override
    {
        if (broken)
            throw ComDriverException(u"the port has failed"_s);
        speed = baudRate;
    }

    int speed = 0;
    bool broken = false;
};

class SerialDriver : public BasicFrDriver
{
public:
    explicit SerialDriver(Line* serialLine)
        : BasicFrDriver(serialLine, u"serial"_s, nullptr)
        , line(serialLine)
    {
        baudRates = {115200, 9600};
    }

    void setConnection() override
    {
        if (line->speed != 9600)
            throw FrNoConnectionException(u"no answer"_s);
    }

private:
    Line* line;
};

TEST(SerialLineInASecondHost, IsSearchedForTheSpeedOfTheDevice)
{
    Line line;
    SerialDriver(&line).connect();
    EXPECT_EQ(line.speed, 9600);
}

TEST(SerialLineInASecondHost, WhosePortFailsIsAMissingLink)
{
    Line line;
    line.broken = true;
    SerialDriver driver(&line);
    Log4Qt::Logger::lines.clear();
    EXPECT_THROW(driver.connect(), FrNoConnectionException);
    EXPECT_THAT(
        Log4Qt::Logger::lines, ElementsAre(u"info: Установка связи с устройством"_s,
                                   u"info: Скорость по умолчанию: 19200"_s, u"error: the port has failed"_s));
}

TEST(DeviceInfoInASecondHost, IsToldALoggerNameOnlyIfTheDriverWasGivenOne)
{
    Line line;
    EXPECT_EQ(SerialDriver(&line).getDeviceInfo().loggerName, u"serial"_s);
    EXPECT_FALSE(BasicFrDriver().getDeviceInfo().loggerName.has_value());
}

} // namespace
