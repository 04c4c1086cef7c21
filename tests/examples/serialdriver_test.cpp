#include "examples/serialdriver/sampledriver.h"
#include "tests/examples/ptydevice.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Far longer than an answer takes; a device that answers at every speed, even if garbled, never uses it up.
constexpr auto longTime = 20s;

const QString noLink = u"FrNoConnectionException: Нет связи"_s;
const QString noAnswer = u"FrNoConnectionException: Нет связи с ФР"_s;

// A driver on the near end of a line, with a device on the far end.
struct Desk
{
    explicit Desk(int speed, PtyDevice::AtAnotherSpeed behaviour = PtyDevice::AtAnotherSpeed::Garbled,
        std::chrono::milliseconds answerTime = longTime)
        : device(speed, behaviour)
        , line(device.path())
        , driver(&line, &settings, answerTime)
    {
    }

    [[nodiscard]] QString connect()
    {
        return outcomeOf([this] { driver.connect(); });
    }

    PtyDevice device;
    BasicFrSettings settings;
    SerialLine line;
    SampleDriver driver;
};

TEST(SerialDriver, FindsTheOnlySpeedThatTheDeviceAnswersAt)
{
    Desk desk(57600);
    desk.driver.portOpen();
    const LogCapture log;
    EXPECT_EQ(desk.connect(), u"returned"_s);
    EXPECT_EQ(desk.device.heard(), (QList<QString>{u"5 at 19200"_s, u"5 at 115200"_s, u"5 at 57600"_s}));
    EXPECT_EQ(desk.device.lineSpeed(), 57600);
    EXPECT_EQ(log.lines(),
        (QStringList{u"info: Установка связи с устройством"_s, u"info: Скорость по умолчанию: 19200"_s,
            u"debug: Перебор скорости подключения к ФР"_s, u"info:  скорость: 115200"_s,
            u"info:  скорость: 57600"_s}));
}

TEST(SerialDriver, ConnectsAtTheDefaultSpeedWithoutASearch)
{
    Desk desk(19200);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), u"returned"_s);
    EXPECT_EQ(desk.device.heard(), QList<QString>{u"5 at 19200"_s});
}

TEST(SerialDriver, WorksOnceItIsConnected)
{
    Desk desk(9600);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), u"returned"_s);
    EXPECT_EQ(outcomeOf([&] { desk.driver.beep(); }), u"returned"_s);
    EXPECT_EQ(desk.device.heard().last(), u"7 at 9600"_s);
    desk.device.changeSpeed(4800);
    EXPECT_EQ(outcomeOf([&] { desk.driver.beep(); }), u"FrCommandException: ФР не выполнил команду"_s);
}

TEST(SerialDriver, FindsADeviceThatHasChangedItsSpeed)
{
    Desk desk(57600);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), u"returned"_s);
    desk.device.changeSpeed(9600);
    EXPECT_EQ(desk.connect(), u"returned"_s);
    EXPECT_EQ(desk.device.lineSpeed(), 9600);
}

TEST(SerialDriver, DoesNotSearchOnReconnectingIfTheSettingsForbidIt)
{
    Desk desk(57600);
    desk.settings.setSpeedEnumerate(false);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), u"returned"_s);
    const qsizetype before = desk.device.heard().size();
    desk.device.changeSpeed(9600);
    EXPECT_EQ(desk.connect(), noAnswer);
    EXPECT_EQ(desk.device.heard().mid(before), (QList<QString>{u"5 at 19200"_s, u"5 at 57600"_s}));
    EXPECT_EQ(desk.device.lineSpeed(), 19200);
    desk.device.changeSpeed(57600);
    EXPECT_EQ(desk.connect(), u"returned"_s);
}

TEST(SerialDriver, GivesUpWhenTheDeviceIsSilentAtEverySpeed)
{
    Desk desk(4800, PtyDevice::AtAnotherSpeed::Silent, 20ms);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), noAnswer);
    EXPECT_EQ(desk.device.lineSpeed(), 19200);
}

TEST(SerialDriver, HasNoLinkWhenTheDeviceIsUnplugged)
{
    Desk desk(19200);
    desk.driver.portOpen();
    EXPECT_EQ(desk.connect(), u"returned"_s);
    desk.device.unplug();
    EXPECT_EQ(desk.connect(), noLink);
}

TEST(SerialDriver, NeedsAnOpenPort)
{
    Desk desk(19200);
    const QString closed = u"FrNoConnectionException: Необходимо открыть порт"_s;
    EXPECT_EQ(outcomeOf([&] { desk.driver.beep(); }), closed);
    desk.driver.portOpen();
    EXPECT_EQ(outcomeOf([&] { desk.driver.isPortReady(); }), u"returned"_s);
    desk.driver.portClose();
    EXPECT_EQ(outcomeOf([&] { desk.driver.beep(); }), closed);
    EXPECT_EQ(desk.device.heard(), QList<QString>());
}

TEST(SerialDriver, StaysClosedIfThePortDoesNotExist)
{
    BasicFrSettings settings;
    SerialLine line(u"/dev/no-such-port"_s);
    SampleDriver driver(&line, &settings, longTime);
    EXPECT_EQ(outcomeOf([&] { driver.portOpen(); }).section(u':', 0, 0), u"ComDriverException"_s);
    EXPECT_NE(outcomeOf([&] { driver.isPortReady(); }), u"returned"_s);
}

TEST(SerialDriver, NamesItsModelAndItsLogger)
{
    Desk desk(19200);
    EXPECT_EQ(desk.driver.getDeviceInfo().getModelName(), u"Sample"_s);
    EXPECT_EQ(desk.driver.getDeviceInfo().getLoggerName(), u"sample_0"_s);
}

} // namespace
