#include "tests/frbase/connectioncases.h"
#include "tests/frbase/scriptedline.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;
using namespace step;

namespace {

QStringList told(const QStringList& sequence, const QString& end, int current, bool connected, int line,
    const std::string& notCalled)
{
    return sequence + QStringList{end, u"current speed %1"_s.arg(current),
                          connected ? u"has been connected"_s : u"has never been connected"_s,
                          u"line at %1"_s.arg(line), u"not called: "_s + QString::fromStdString(notCalled)};
}

class Connecting : public testing::TestWithParam<ConnectionCase>
{
};

TEST_P(Connecting, IsThisSequence)
{
    const ConnectionCase& c = GetParam();
    BasicFrSettings settings;
    settings.setSpeedEnumerate(c.searchAllowed);
    ScriptedLine line;
    line.kinds = c.kinds;
    line.script = Script(c.line);
    ScriptedDriver driver(&line, &settings);
    driver.script = Script(c.device);
    driver.baudRates = c.baudRates;
    driver.connectedOnce = c.connectedBefore;
    driver.currentBaudRate = c.currentBefore;

    LogCapture log;
    const QString end = outcomeOf([&] { driver.connect(); });
    EXPECT_EQ(told(log.take(), end, driver.currentBaudRate, driver.connectedOnce, line.baudRate,
                  line.script.rest() + driver.script.rest()),
        told(c.sequence, c.outcome, c.currentAfter, c.connectedAfter, c.lineAfter, ""));
    EXPECT_EQ(driver.defaultBaudRate, 19200);
    EXPECT_EQ(driver.baudRates, c.baudRates);
    EXPECT_TRUE(driver.portClosed);
}

std::string nameOf(const testing::TestParamInfo<ConnectionCase>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(SerialLine, Connecting, testing::ValuesIn(serialLineCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(PortFailure, Connecting, testing::ValuesIn(portFailureCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(SilenceReportedByTheLine, Connecting, testing::ValuesIn(silentLineCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(Reconnection, Connecting, testing::ValuesIn(reconnectionCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(LineWithoutSpeed, Connecting, testing::ValuesIn(lineWithoutSpeedCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(PortKind, Connecting, testing::ValuesIn(portKindCases()), nameOf);
INSTANTIATE_TEST_SUITE_P(OtherExceptionPasses, Connecting, testing::ValuesIn(passingThroughCases()), nameOf);

// A device that was found once and then moved to another speed.
TEST(ConnectingTwice, DoesNotSearchTheSecondTimeWhenTheSettingsForbidIt)
{
    BasicFrSettings settings;
    settings.setSpeedEnumerate(false);
    ScriptedLine line;
    ScriptedDriver driver(&line, &settings);
    driver.baudRates = {19200, 115200, 9600};
    line.script = Script("+++");
    driver.script = Script("--+");
    driver.connect();
    EXPECT_EQ(driver.currentBaudRate, 9600);

    line.script.append("+++");
    driver.script.append("--");
    LogCapture log;
    EXPECT_EQ(outcomeOf([&] { driver.connect(); }), outcome::noAnswer);
    EXPECT_EQ(log.take(),
        silentAtDefault + (QStringList{searchOff, atCurrent(9600), speed(9600), handshake, speed(19200)}));
}

TEST(Connecting, WithoutAPortIsNoLink)
{
    ScriptedDriver driver(nullptr);
    const LogCapture log;
    EXPECT_EQ(outcomeOf([&] { driver.connect(); }), outcome::noLink);
    EXPECT_EQ(log.lines(), (QStringList{start, u"error: Ошибка инициализации драйвера порта"_s}));
}

TEST(Connecting, TakesTheDefaultSpeedOfTheDriver)
{
    ScriptedLine line;
    line.script = Script("+++");
    ScriptedDriver driver(&line);
    driver.script = Script("--");
    driver.defaultBaudRate = 9600;
    driver.baudRates = {9600, 19200};
    const LogCapture log;
    EXPECT_EQ(outcomeOf([&] { driver.connect(); }), outcome::noAnswer);
    EXPECT_EQ(
        log.lines(), (QStringList{start, kind, kind, u"info: Скорость по умолчанию: 9600"_s, speed(9600),
                         handshake, search, speed(19200), trying(19200), handshake, speed(9600)}));
}

TEST(Connecting, CallsTheOverridesOfADriver)
{
    class Overriding : public ScriptedDriver
    {
    public:
        using ScriptedDriver::ScriptedDriver;
        bool enumerateSpeed() override
        {
            note(u"own search"_s);
            return true;
        }
        bool connectAtCurrentSpeed() override
        {
            note(u"own current speed"_s);
            return true;
        }
    };
    BasicFrSettings settings;
    settings.setSpeedEnumerate(false);
    ScriptedLine line;
    line.script = Script("++");
    Overriding driver(&line, &settings);
    driver.script = Script("--");
    driver.currentBaudRate = 4800;
    const LogCapture log;
    driver.connect();
    EXPECT_TRUE(driver.connectedOnce);
    driver.connect();
    EXPECT_EQ(log.lines(), silentAtDefault + QStringList{u"debug: own search"_s} + silentAtDefault +
                               (QStringList{searchOff, u"debug: own current speed"_s}));
    EXPECT_EQ(driver.currentBaudRate, 4800);
}

TEST(SpeedSearch, LeavesTheLineAtTheLastSpeedTried)
{
    ScriptedLine line;
    line.script = Script("++");
    ScriptedDriver driver(&line);
    driver.script = Script("--");
    driver.baudRates = {57600, 19200, 9600};
    driver.currentBaudRate = 4800;
    const LogCapture log;
    EXPECT_FALSE(driver.enumerateSpeed());
    EXPECT_EQ(log.lines(),
        (QStringList{search, speed(57600), trying(57600), handshake, speed(9600), trying(9600), handshake}));
    EXPECT_EQ(line.baudRate, 9600);
    EXPECT_EQ(driver.currentBaudRate, 4800);
    EXPECT_FALSE(driver.connectedOnce);
}

TEST(SpeedSearch, KeepsTheSpeedThatAnswered)
{
    ScriptedLine line;
    line.script = Script("+");
    ScriptedDriver driver(&line);
    driver.script = Script("+");
    driver.baudRates = {57600, 9600};
    EXPECT_TRUE(driver.enumerateSpeed());
    EXPECT_EQ(driver.currentBaudRate, 57600);
    EXPECT_FALSE(driver.connectedOnce);
}

TEST(SpeedSearch, OfAnEmptyListOnlySaysThatItSearches)
{
    ScriptedDriver driver(nullptr);
    const LogCapture log;
    EXPECT_FALSE(driver.enumerateSpeed());
    EXPECT_EQ(log.lines(), QStringList{search});
}

TEST(SpeedSearch, WalksTheListAsItWasThoughAHandshakeChangesIt)
{
    class Changing : public ScriptedDriver
    {
    public:
        using ScriptedDriver::ScriptedDriver;
        void setConnection() override
        {
            baudRates.fill(4800);
            ScriptedDriver::setConnection();
        }
    };
    ScriptedLine line;
    line.script = Script("++");
    Changing driver(&line);
    driver.script = Script("-+");
    driver.baudRates = {57600, 9600};
    EXPECT_TRUE(driver.enumerateSpeed());
    EXPECT_EQ(driver.currentBaudRate, 9600);
}

struct AtCurrentSpeed
{
    const char* line;
    const char* device;
    QStringList sequence;
    QString outcome;
};

TEST(CurrentSpeed, IsTriedOnce)
{
    const QStringList set{atCurrent(9600), speed(9600)};
    const QStringList tried = set + QStringList{handshake};
    const std::vector<AtCurrentSpeed> cases{
        {"+", "+", tried, u"true"_s},
        {"+", "-", tried, u"false"_s},
        {"-", "", set, u"false"_s},
        {"p", "", set + QStringList{portFailure}, outcome::noLink},
        {"+", "p", tried + QStringList{portFailure}, outcome::noLink},
        {"c", "", set, u"FrCommandException: Иное"_s},
        {"+", "d", tried, u"DriverException: Иное"_s},
    };
    for (const AtCurrentSpeed& c : cases) {
        SCOPED_TRACE(std::string(c.line) + " " + c.device);
        ScriptedLine line;
        line.script = Script(c.line);
        ScriptedDriver driver(&line);
        driver.script = Script(c.device);
        driver.currentBaudRate = 9600;
        LogCapture log;
        QString answer;
        const QString end =
            outcomeOf([&] { answer = driver.connectAtCurrentSpeed() ? u"true"_s : u"false"_s; });
        EXPECT_EQ(log.take(), c.sequence);
        EXPECT_EQ(answer.isEmpty() ? end : answer, c.outcome);
        EXPECT_EQ(driver.currentBaudRate, 9600);
        EXPECT_FALSE(driver.connectedOnce);
    }
}

TEST(PortReady, NeedsAPort)
{
    ScriptedDriver driver(nullptr);
    driver.portClosed = false;
    EXPECT_EQ(outcomeOf([&] { driver.isPortReady(); }),
        u"FrNoConnectionException: Ошибка инициализации драйвера порта"_s);
}

TEST(PortReady, NeedsAnOpenPort)
{
    ScriptedLine line;
    ScriptedDriver driver(&line);
    const LogCapture log;
    EXPECT_EQ(
        outcomeOf([&] { driver.isPortReady(); }), u"FrNoConnectionException: Необходимо открыть порт"_s);
    driver.portClosed = false;
    EXPECT_EQ(outcomeOf([&] { driver.isPortReady(); }), outcome::returned);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST(PortReady, IsNotWrittenByTheBase)
{
    ScriptedLine line;
    ScriptedDriver driver(&line);
    driver.portOpen();
    EXPECT_TRUE(driver.portClosed);
    driver.portClosed = false;
    driver.portClose();
    EXPECT_FALSE(driver.portClosed);
}

} // namespace
