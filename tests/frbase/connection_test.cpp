#include "tests/frbase/scriptedline.h"
#include "tests/support/logcapture.h"
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

QString connecting(ScriptedDriver& driver)
{
    return outcomeOf([&] { driver.connect(); });
}

QString searching(ScriptedDriver& driver)
{
    return driver.enumerateSpeed() ? u"true"_s : u"false"_s;
}

QString tryingTheCurrentSpeed(ScriptedDriver& driver)
{
    return driver.connectAtCurrentSpeed() ? u"true"_s : u"false"_s;
}

// The state before the call.
struct Given
{
    QList<int> baudRates = {};
    bool searchAllowed = true;
    bool connectedOnce = false;
    int current = 19200;
    int standard = 19200;
    QList<int> kinds = {1};
};

// A row of the table: the steps of a call, which are also the script of line and device, and its outcome.
//
//   19200+     the line is set to a speed    search, off, current9600   log lines
//   try9600+   the same, by the search       portError, lineError       log lines of a failed port
//   hello+     the handshake
//
// The last letter says what the line or the device does, see Script.
struct Row
{
    std::string name;
    Given given;
    std::string steps;
    QString outcome;
    QString (*call)(ScriptedDriver& driver) = connecting;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.steps;
}

// The steps as log lines, calls of line and device among them, and the scripts for these.
struct Expected
{
    QStringList log;
    std::string line;
    std::string device;
    // The last speed that was set.
    int speed = 0;
};

void addBeginning(Expected& expected, const Given& given, bool hasSpeed)
{
    expected.log << u"info: Установка связи с устройством"_s << u"debug: kind?"_s << u"debug: kind?"_s;
    if (hasSpeed)
        expected.log << u"info: Скорость по умолчанию: %1"_s.arg(given.standard);
}

void addSpeed(Expected& expected, const std::string& step)
{
    const bool isSearch = step.starts_with("try");
    expected.speed = std::stoi(step.substr(isSearch ? 3 : 0));
    expected.line += step.back();
    expected.log << u"debug: speed %1"_s.arg(expected.speed);
    if (isSearch && step.back() == '+')
        expected.log << u"info:  скорость: %1"_s.arg(expected.speed);
}

void addStep(Expected& expected, const std::string& step)
{
    if (step == "search") {
        expected.log << u"debug: Перебор скорости подключения к ФР"_s;
    } else if (step == "off") {
        expected.log << u"debug: Перебор скорости отключен настройками"_s;
    } else if (step == "portError") {
        expected.log << u"error: Порт сломан"_s;
    } else if (step == "lineError") {
        expected.log << u"error: Не удалось установить соединение: Порт сломан"_s;
    } else if (step.starts_with("current")) {
        expected.log << u"info:  установка соединения на скорости: %1"_s.arg(std::stoi(step.substr(7)));
    } else if (step.starts_with("hello")) {
        expected.device += step.back();
        expected.log << u"debug: handshake"_s;
    } else {
        addSpeed(expected, step);
    }
}

Expected expectedOf(const Row& row)
{
    Expected expected;
    if (row.call == connecting)
        addBeginning(expected, row.given, !row.steps.starts_with("hello"));
    std::istringstream steps(row.steps);
    for (std::string step; steps >> step;)
        addStep(expected, step);
    return expected;
}

void expectSteps(const Row& row)
{
    SCOPED_TRACE(row.steps);
    const Given& given = row.given;
    const Expected expected = expectedOf(row);
    BasicFrSettings settings;
    settings.setSpeedEnumerate(given.searchAllowed);
    ScriptedLine line;
    line.kinds = given.kinds;
    line.script = Script(expected.line);
    ScriptedDriver driver(&line, &settings);
    driver.script = Script(expected.device);
    driver.baudRates = given.baudRates;
    driver.connectedOnce = given.connectedOnce;
    driver.currentBaudRate = given.current;
    driver.defaultBaudRate = given.standard;

    LogCapture log;
    EXPECT_EQ(row.call(driver), row.outcome);
    EXPECT_EQ(log.take(), expected.log);
    EXPECT_EQ(line.script.rest() + driver.script.rest(), "") << "not called";

    const bool found = (row.outcome == u"returned" || row.outcome == u"true") && expected.speed > 0;
    EXPECT_EQ(driver.currentBaudRate, found ? expected.speed : given.current);
    EXPECT_EQ(driver.connectedOnce, given.connectedOnce || (found && row.call == connecting));
    EXPECT_EQ(driver.defaultBaudRate, given.standard);
    EXPECT_EQ(driver.baudRates, given.baudRates);
    EXPECT_TRUE(driver.portClosed);
}

const QString returned = u"returned"_s;
const QString noLink = u"FrNoConnectionException: Нет связи"_s;
const QString noAnswer = u"FrNoConnectionException: Нет связи с ФР"_s;

const std::string searched = "19200+ hello- search ";
const std::string notSearched = "19200+ hello- off current9600 ";
const Given again{.searchAllowed = false, .connectedOnce = true, .current = 9600};
const Given againWithSearch{.baudRates = {57600}, .connectedOnce = true, .current = 9600};

const std::vector<Row> rows{
    {"AnswersAtTheDefaultSpeed", {{115200, 9600}}, "19200+ hello+", returned},
    {"SearchesInListOrderWithoutTheDefaultSpeed", {{115200, 19200, 9600, 19200, 4800}},
        searched + "try115200+ hello- try9600+ hello- try4800+ hello+", returned},
    {"SearchesOnTheFirstConnectionThoughTheSettingsForbidIt", {{9600, 4800}, false},
        searched + "try9600+ hello+", returned},
    {"FailsWithOnlyTheDefaultSpeedInTheList", {{19200, 19200}}, searched + "19200+", noAnswer},
    {"ReturnsToTheDefaultSpeedWhenNoSpeedAnswers", {{115200, 9600, 9600}},
        searched + "try115200+ hello- try9600+ hello- try9600+ hello- 19200+", noAnswer},
    {"StartsAtTheDefaultSpeedOfTheDriver", {.baudRates = {9600, 19200}, .standard = 9600},
        "9600+ hello- search try19200+ hello- 9600+", noAnswer},

    {"PortFailsAtTheDefaultSpeed", {{9600}}, "19200p portError", noLink},
    {"PortFailsInTheHandshakeAtTheDefaultSpeed", {{9600}}, "19200+ hellop portError", noLink},
    {"PortFailsDuringTheSearch", {{115200, 57600, 9600}},
        searched + "try115200p try57600+ hellop try9600+ hello+", returned},
    {"PortFailsAtEverySpeedOfTheSearch", {{115200, 9600}}, searched + "try115200p try9600+ hellop 19200+",
        noAnswer},
    {"PortFailsOnReturningToTheDefaultSpeed", {{9600}}, searched + "try9600+ hello- 19200p", noAnswer},
    {"PortFailsAtTheCurrentSpeed", again, notSearched + "9600p portError", noLink},
    {"PortFailsInTheHandshakeAtTheCurrentSpeed", again, notSearched + "9600+ hellop portError", noLink},
    {"PortFailsOnReturningFromTheCurrentSpeed", again, notSearched + "9600+ hello- 19200p", noAnswer},

    {"LineIsSilentAtTheDefaultSpeed", {{9600}}, "19200- search try9600+ hello+", returned},
    {"LineIsSilentDuringTheSearch", {{115200, 9600}}, searched + "try115200- try9600+ hello+", returned},
    {"LineIsSilentAtTheCurrentSpeed", again, notSearched + "9600- 19200+", noAnswer},
    {"LineIsSilentOnReturningToTheDefaultSpeed", {{9600}}, searched + "try9600+ hello- 19200-",
        u"FrNoConnectionException: Молчит"_s},

    {"ReconnectsAtTheDefaultSpeed", again, "19200+ hello+", returned},
    {"ReconnectsWithASearchWhereTheSettingsAllowIt", againWithSearch, searched + "try57600+ hello+",
        returned},
    {"KeepsTheCurrentSpeedWhenTheSearchFindsNone", againWithSearch, searched + "try57600+ hello- 19200+",
        noAnswer},
    {"ReconnectsAtTheCurrentSpeedWhereTheSettingsForbidTheSearch", again, notSearched + "9600+ hello+",
        returned},
    {"FailsWhenTheCurrentSpeedDoesNotAnswerEither", again, notSearched + "9600+ hello- 19200+", noAnswer},
    {"TriesTheDefaultSpeedTwiceWhenItIsTheCurrentOne", {.searchAllowed = false, .connectedOnce = true},
        "19200+ hello- off current19200 19200+ hello+", returned},

    {"SearchOfAnEmptyList", {.current = 4800}, "search", u"false"_s, searching},
    {"SearchThatFindsASpeed", {{57600, 9600}}, "search try57600+ hello+", u"true"_s, searching},
    {"SearchThatFindsNoSpeed", {.baudRates = {57600, 19200, 9600}, .current = 4800},
        "search try57600+ hello- try9600+ hello-", u"false"_s, searching},
    {"CurrentSpeedThatAnswers", again, "current9600 9600+ hello+", u"true"_s, tryingTheCurrentSpeed},
    {"CurrentSpeedThatDoesNotAnswer", again, "current9600 9600+ hello-", u"false"_s, tryingTheCurrentSpeed},
};

class Connection : public testing::TestWithParam<Row>
{
};

TEST_P(Connection, GoesThroughTheStepsOfTheTable)
{
    expectSteps(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Of, Connection, testing::ValuesIn(rows), [](const auto& row) { return row.param.name; });

TEST(ConnectionWithoutSpeed, TakesThreeAttemptsThatAPortFailureEnds)
{
    const std::pair<const char*, QString> attempts[]{{"hello+", returned}, {"hello- hello+", returned},
        {"hello- hello- hello+", returned}, {"hello- hello- hello-", noAnswer},
        {"hellop lineError", noAnswer}, {"hello- hellop lineError", noAnswer},
        {"hello- hello- hellop lineError", noAnswer}};
    for (const auto& [steps, outcome] : attempts) {
        for (const int kind : {3, 4}) {
            for (const bool connected : {false, true})
                expectSteps({{}, {{9600}, true, connected, 4800, 19200, {kind}}, steps, outcome});
        }
    }
}

TEST(ConnectionWithSpeed, IsThatOfEveryKindBut3And4)
{
    for (const int kind : {-1, 0, 1, 2, 5, 34})
        expectSteps({{}, {.kinds = {kind}}, "19200+ hello+", returned});
}

TEST(ConnectionWithSpeed, AsksForKind3FirstAndForKind4Second)
{
    expectSteps({{}, {.kinds = {4, 3}}, "19200+ hello+", returned});
}

TEST(OtherExceptions, PassThroughConnectAtEveryStep)
{
    const Given first{{115200}};
    const Given withoutSpeed{.kinds = {3}};
    // '*' stands for the exception.
    const std::pair<Given, std::string> places[]{{first, "19200*"}, {first, "19200+ hello*"},
        {first, searched + "try115200*"}, {first, searched + "try115200+ hello*"},
        {first, searched + "try115200+ hello- 19200*"}, {again, notSearched + "9600*"},
        {again, notSearched + "9600+ hello*"}, {again, notSearched + "9600+ hello- 19200*"},
        {withoutSpeed, "hello*"}, {withoutSpeed, "hello- hello*"}, {withoutSpeed, "hello- hello- hello*"}};
    const std::pair<char, QString> others[]{{'c', u"FrCommandException: Иное"_s},
        {'d', u"DriverException: Иное"_s}, {'s', u"std::runtime_error: other"_s}};
    for (const auto& [given, steps] : places) {
        for (const auto& [letter, outcome] : others)
            expectSteps({{}, given, std::string(steps).replace(steps.find('*'), 1, 1, letter), outcome});
    }
}

TEST(ConnectionWithoutAPort, IsNoLink)
{
    ScriptedDriver driver(nullptr);
    const LogCapture log;
    EXPECT_EQ(connecting(driver), noLink);
    EXPECT_EQ(log.lines(), (QStringList{u"info: Установка связи с устройством"_s,
                               u"error: Ошибка инициализации драйвера порта"_s}));
}

TEST(ConnectionOfADerivedDriver, CallsItsOverrides)
{
    class Overriding : public ScriptedDriver
    {
    public:
        using ScriptedDriver::ScriptedDriver;
        bool enumerateSpeed() override { return (calls << u"search"_s, true); }
        bool connectAtCurrentSpeed() override { return (calls << u"current speed"_s, true); }
        QStringList calls;
    };
    BasicFrSettings settings;
    settings.setSpeedEnumerate(false);
    ScriptedLine line;
    line.script = Script("++");
    Overriding driver(&line, &settings);
    driver.script = Script("--");
    driver.currentBaudRate = 4800;
    driver.connect();
    EXPECT_TRUE(driver.connectedOnce);
    driver.connect();
    EXPECT_EQ(driver.calls, (QStringList{u"search"_s, u"current speed"_s}));
    EXPECT_EQ(driver.currentBaudRate, 4800);
}

TEST(SpeedSearch, UsesTheListAsItWasWhenAHandshakeChangesIt)
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

TEST(PortReady, NeedsAnOpenPort)
{
    const auto ready = [](const ScriptedDriver& driver) { return outcomeOf([&] { driver.isPortReady(); }); };
    ScriptedLine line;
    ScriptedDriver driver(&line);
    ScriptedDriver withoutPort(nullptr);
    withoutPort.portClosed = false;
    const LogCapture log;
    EXPECT_EQ(ready(withoutPort), u"FrNoConnectionException: Ошибка инициализации драйвера порта"_s);
    EXPECT_EQ(ready(driver), u"FrNoConnectionException: Необходимо открыть порт"_s);
    driver.portClosed = false;
    EXPECT_EQ(ready(driver), returned);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST(PortClosed, IsLeftToDerivedDrivers)
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
