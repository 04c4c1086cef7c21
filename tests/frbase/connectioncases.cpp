#include "tests/frbase/connectioncases.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using namespace step;
using namespace outcome;

void PrintTo(const ConnectionCase& c, std::ostream* out)
{
    *out << c.name;
}

ConnectionCases serialLineCases()
{
    return {
        {.name = "AnswersAtTheDefaultSpeed",
            .baudRates = {115200, 9600},
            .line = "+",
            .device = "+",
            .sequence = silentAtDefault,
            .outcome = returned,
            .connectedAfter = true},
        {.name = "IsFoundInTheOrderOfTheListWithoutTheDefaultSpeed",
            .baudRates = {19200, 115200, 9600},
            .line = "+++",
            .device = "--+",
            .sequence = silentAtDefault + QStringList{search, speed(115200), trying(115200), handshake,
                                              speed(9600), trying(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "SkipsEveryDefaultSpeedInTheList",
            .baudRates = {115200, 19200, 9600, 19200, 4800},
            .line = "++++",
            .device = "---+",
            .sequence =
                silentAtDefault + QStringList{search, speed(115200), trying(115200), handshake, speed(9600),
                                      trying(9600), handshake, speed(4800), trying(4800), handshake},
            .outcome = returned,
            .currentAfter = 4800,
            .connectedAfter = true,
            .lineAfter = 4800},
        {.name = "StopsAtTheFirstSpeedThatAnswers",
            .baudRates = {115200, 9600},
            .line = "++",
            .device = "-+",
            .sequence = silentAtDefault + QStringList{search, speed(115200), trying(115200), handshake},
            .outcome = returned,
            .currentAfter = 115200,
            .connectedAfter = true,
            .lineAfter = 115200},
        {.name = "SearchesOnTheFirstConnectionThoughTheSettingsForbidIt",
            .baudRates = {9600},
            .searchAllowed = false,
            .line = "++",
            .device = "-+",
            .sequence = silentAtDefault + QStringList{search, speed(9600), trying(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "FailsWithAnEmptyList",
            .line = "++",
            .device = "-",
            .sequence = silentAtDefault + QStringList{search, speed(19200)},
            .outcome = noAnswer},
        {.name = "FailsWithNothingButTheDefaultSpeedInTheList",
            .baudRates = {19200, 19200},
            .line = "++",
            .device = "-",
            .sequence = silentAtDefault + QStringList{search, speed(19200)},
            .outcome = noAnswer},
        {.name = "GoesBackToTheDefaultSpeedWhenNoneAnswers",
            .baudRates = {115200, 9600, 9600},
            .line = "+++++",
            .device = "----",
            .sequence = silentAtDefault + QStringList{search, speed(115200), trying(115200), handshake,
                                              speed(9600), trying(9600), handshake, speed(9600), trying(9600),
                                              handshake, speed(19200)},
            .outcome = noAnswer},
        {.name = "SearchesWhenTheLineItselfReportsSilenceAtTheDefaultSpeed",
            .baudRates = {9600},
            .line = "-+",
            .device = "+",
            .sequence = {start, kind, kind, defaultSpeed, speed(19200), search, speed(9600), trying(9600),
                handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
    };
}

ConnectionCases portFailureCases()
{
    return {
        {.name = "WhenTheDefaultSpeedIsSet",
            .baudRates = {9600},
            .line = "p",
            .sequence = {start, kind, kind, defaultSpeed, speed(19200), portFailure},
            .outcome = noLink,
            .lineAfter = 1200},
        {.name = "InTheHandshakeAtTheDefaultSpeed",
            .baudRates = {9600},
            .line = "+",
            .device = "p",
            .sequence = silentAtDefault + QStringList{portFailure},
            .outcome = noLink},
        {.name = "WhenASpeedOfTheSearchIsSet",
            .baudRates = {115200, 9600},
            .line = "+p+",
            .device = "-+",
            .sequence =
                silentAtDefault + QStringList{search, speed(115200), speed(9600), trying(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "InAHandshakeOfTheSearch",
            .baudRates = {115200, 9600},
            .line = "+++",
            .device = "-p+",
            .sequence = silentAtDefault + QStringList{search, speed(115200), trying(115200), handshake,
                                              speed(9600), trying(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "AtEverySpeedOfTheSearch",
            .baudRates = {115200, 9600},
            .line = "+p++",
            .device = "-p",
            .sequence = silentAtDefault + QStringList{search, speed(115200), speed(9600), trying(9600),
                                              handshake, speed(19200)},
            .outcome = noAnswer},
        {.name = "WhenTheSpeedIsSetBack",
            .baudRates = {9600},
            .line = "++p",
            .device = "--",
            .sequence =
                silentAtDefault + QStringList{search, speed(9600), trying(9600), handshake, speed(19200)},
            .outcome = noAnswer,
            .lineAfter = 9600},
        {.name = "WhenTheCurrentSpeedIsSet",
            .baudRates = {115200},
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "+p",
            .device = "-",
            .sequence = silentAtDefault + QStringList{searchOff, atCurrent(9600), speed(9600), portFailure},
            .outcome = noLink,
            .currentAfter = 9600,
            .connectedAfter = true},
        {.name = "InTheHandshakeAtTheCurrentSpeed",
            .baudRates = {115200},
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "++",
            .device = "-p",
            .sequence = silentAtDefault +
                        QStringList{searchOff, atCurrent(9600), speed(9600), handshake, portFailure},
            .outcome = noLink,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "WhenTheSpeedIsSetBackFromTheCurrentOne",
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "++p",
            .device = "--",
            .sequence = silentAtDefault +
                        QStringList{searchOff, atCurrent(9600), speed(9600), handshake, speed(19200)},
            .outcome = noAnswer,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
    };
}

ConnectionCases silentLineCases()
{
    return {
        {.name = "LeadsToTheNextSpeedOfTheSearch",
            .baudRates = {115200, 9600},
            .line = "+-+",
            .device = "-+",
            .sequence =
                silentAtDefault + QStringList{search, speed(115200), speed(9600), trying(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "IsNoAnswerAtTheCurrentSpeed",
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "+-+",
            .device = "-",
            .sequence = silentAtDefault + QStringList{searchOff, atCurrent(9600), speed(9600), speed(19200)},
            .outcome = noAnswer,
            .currentAfter = 9600,
            .connectedAfter = true},
        {.name = "PassesWhenTheSpeedIsSetBack",
            .baudRates = {9600},
            .line = "++-",
            .device = "--",
            .sequence =
                silentAtDefault + QStringList{search, speed(9600), trying(9600), handshake, speed(19200)},
            .outcome = u"FrNoConnectionException: Молчит"_s,
            .lineAfter = 9600},
    };
}

ConnectionCases reconnectionCases()
{
    return {
        {.name = "AtTheDefaultSpeedMakesItTheCurrentOne",
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "+",
            .device = "+",
            .sequence = silentAtDefault,
            .outcome = returned,
            .connectedAfter = true},
        {.name = "SearchesWhenTheSettingsAllowIt",
            .baudRates = {57600},
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "++",
            .device = "-+",
            .sequence = silentAtDefault + QStringList{search, speed(57600), trying(57600), handshake},
            .outcome = returned,
            .currentAfter = 57600,
            .connectedAfter = true,
            .lineAfter = 57600},
        {.name = "TriesTheCurrentSpeedWhenTheSettingsForbidTheSearch",
            .baudRates = {57600},
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "++",
            .device = "-+",
            .sequence = silentAtDefault + QStringList{searchOff, atCurrent(9600), speed(9600), handshake},
            .outcome = returned,
            .currentAfter = 9600,
            .connectedAfter = true,
            .lineAfter = 9600},
        {.name = "FailsWhenTheCurrentSpeedDoesNotAnswerEither",
            .baudRates = {57600},
            .searchAllowed = false,
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "+++",
            .device = "--",
            .sequence = silentAtDefault +
                        QStringList{searchOff, atCurrent(9600), speed(9600), handshake, speed(19200)},
            .outcome = noAnswer,
            .currentAfter = 9600,
            .connectedAfter = true},
        {.name = "TriesTheDefaultSpeedAgainWhenItIsTheCurrentOne",
            .baudRates = {57600},
            .searchAllowed = false,
            .connectedBefore = true,
            .line = "++",
            .device = "-+",
            .sequence = silentAtDefault + QStringList{searchOff, atCurrent(19200), speed(19200), handshake},
            .outcome = returned,
            .connectedAfter = true},
        {.name = "KeepsTheCurrentSpeedWhenTheSearchFindsNone",
            .baudRates = {57600},
            .connectedBefore = true,
            .currentBefore = 9600,
            .line = "+++",
            .device = "--",
            .sequence =
                silentAtDefault + QStringList{search, speed(57600), trying(57600), handshake, speed(19200)},
            .outcome = noAnswer,
            .currentAfter = 9600,
            .connectedAfter = true},
    };
}

ConnectionCases lineWithoutSpeedCases()
{
    const QStringList once{start, kind, kind, handshake};
    const QStringList twice = once + QStringList{handshake};
    const QStringList thrice = twice + QStringList{handshake};
    ConnectionCases cases;
    for (const int number : {3, 4}) {
        const std::string suffix = "OfKind" + std::to_string(number);
        const auto add = [&](const char* name, const char* device, const QStringList& sequence,
                             const QString& end) {
            for (const bool connected : {false, true}) {
                cases.push_back({.name = name + suffix + (connected ? "Again" : ""),
                    .kinds = {number},
                    .baudRates = {9600},
                    .connectedBefore = connected,
                    .currentBefore = 4800,
                    .device = device,
                    .sequence = sequence,
                    .outcome = end,
                    .currentAfter = 4800,
                    .connectedAfter = connected,
                    .lineAfter = 1200});
            }
        };
        add("AnswersAtOnce", "+", once, returned);
        add("AnswersTheSecondTime", "-+", twice, returned);
        add("AnswersTheThirdTime", "--+", thrice, returned);
        add("FailsAfterThreeAttempts", "---", thrice, noAnswer);
        add("EndsWhenThePortFailsAtOnce", "p", once + QStringList{lineFailure}, noAnswer);
        add("EndsWhenThePortFailsTheSecondTime", "-p", twice + QStringList{lineFailure}, noAnswer);
        add("EndsWhenThePortFailsTheThirdTime", "--p", thrice + QStringList{lineFailure}, noAnswer);
    }
    return cases;
}

ConnectionCases portKindCases()
{
    ConnectionCases cases;
    const auto add = [&](const std::string& name, const QList<int>& kinds) {
        cases.push_back({.name = name,
            .kinds = kinds,
            .line = "+",
            .device = "+",
            .sequence = silentAtDefault,
            .outcome = returned,
            .connectedAfter = true});
    };
    for (const int number : {0, 1, 2, 5, 34})
        add("Kind" + std::to_string(number) + "HasASpeed", {number});
    add("NegativeKindHasASpeed", {-1});
    add("TheFirstAnswerIsComparedWith3AndTheSecondWith4", {4, 3});
    return cases;
}

ConnectionCases passingThroughCases()
{
    // '*' stands for the exception.
    const ConnectionCase first{.baudRates = {115200, 9600}};
    const ConnectionCase again{
        .baudRates = {115200}, .searchAllowed = false, .connectedBefore = true, .currentBefore = 9600};
    const auto serial = [](ConnectionCase c, const char* name, const char* line, const char* device,
                            const QStringList& sequence, int lineAfter) {
        c.name = name;
        c.line = line;
        c.device = device;
        c.sequence = sequence;
        c.lineAfter = lineAfter;
        c.currentAfter = c.currentBefore;
        c.connectedAfter = c.connectedBefore;
        return c;
    };
    const QStringList setDefault{start, kind, kind, defaultSpeed, speed(19200)};
    const QStringList found = silentAtDefault + QStringList{search, speed(115200)};
    const QStringList reconnect = silentAtDefault + QStringList{searchOff, atCurrent(9600), speed(9600)};
    ConnectionCases places{
        serial(first, "WhenTheDefaultSpeedIsSet", "*", "", setDefault, 1200),
        serial(first, "InTheHandshakeAtTheDefaultSpeed", "+", "*", silentAtDefault, 19200),
        serial(first, "WhenASpeedOfTheSearchIsSet", "+*", "-", found, 19200),
        serial(first, "InAHandshakeOfTheSearch", "++", "-*", found + QStringList{trying(115200), handshake},
            115200),
        serial(first, "WhenTheSpeedIsSetBack", "+++*", "---",
            found +
                QStringList{trying(115200), handshake, speed(9600), trying(9600), handshake, speed(19200)},
            9600),
        serial(again, "WhenTheCurrentSpeedIsSet", "+*", "-", reconnect, 19200),
        serial(
            again, "InTheHandshakeAtTheCurrentSpeed", "++", "-*", reconnect + QStringList{handshake}, 9600),
        serial(again, "WhenTheSpeedIsSetBackFromTheCurrentOne", "++*", "--",
            reconnect + QStringList{handshake, speed(19200)}, 9600),
    };
    QStringList sequence{start, kind, kind};
    for (const char* device : {"*", "-*", "--*"}) {
        sequence << handshake;
        places.push_back({.name = "InAttempt" + std::to_string(std::string(device).size()) + "WithoutSpeed",
            .kinds = {3},
            .device = device,
            .sequence = sequence,
            .lineAfter = 1200});
    }

    const std::vector<std::pair<char, QString>> others{{'c', u"FrCommandException: Иное"_s},
        {'d', u"DriverException: Иное"_s}, {'s', u"std::runtime_error: other"_s}};
    ConnectionCases cases;
    for (const auto& [letter, end] : others) {
        for (ConnectionCase place : places) {
            place.name = place.name + "_" + letter;
            std::replace(place.line.begin(), place.line.end(), '*', letter);
            std::replace(place.device.begin(), place.device.end(), '*', letter);
            place.outcome = end;
            cases.push_back(place);
        }
    }
    return cases;
}
