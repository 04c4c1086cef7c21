#include "hostcli/commandline.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

std::variant<CommandLine, CommandLineText> parsed(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "frhost");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

CommandLineText answer(const std::vector<const char*>& arguments)
{
    const auto result = parsed(arguments);
    if (const auto* text = std::get_if<CommandLineText>(&result))
        return *text;
    ADD_FAILURE() << "the arguments were taken";
    return {};
}

// What a library says of itself.
QString loadedVersion(const char* function)
{
    const auto version = reinterpret_cast<const char* (*)(int)>(dlsym(RTLD_DEFAULT, function));
    return version ? QString::fromLatin1(version(0)) : QString();
}

TEST(CommandLine, HoldsTheCommandWithOptionsBeforeAndBehindIt)
{
    const auto line = std::get<CommandLine>(parsed(
        {"--config", "r.ini", "sell", "a.json", "-", "--json", "--log-level", "info", "--plugin", "p.so"}));
    EXPECT_EQ(line.command, Command::Sell);
    EXPECT_EQ(line.config, u"r.ini"_s);
    EXPECT_EQ(line.plugin, u"p.so"_s);
    EXPECT_TRUE(line.json);
    EXPECT_EQ(line.logLevel, u"info"_s);
    EXPECT_EQ(line.files, (QStringList{u"a.json"_s, u"-"_s}));
}

TEST(CommandLine, HasQuietDefaults)
{
    const auto line = std::get<CommandLine>(parsed({"describe"}));
    EXPECT_EQ(line.command, Command::Describe);
    EXPECT_EQ(line.config, QString());
    EXPECT_EQ(line.plugin, QString());
    EXPECT_FALSE(line.json);
    EXPECT_EQ(line.logLevel, u"warning"_s);
    EXPECT_EQ(line.logFile, QString());
    EXPECT_FALSE(line.quiet);
}

TEST(CommandLine, LogsMoreIntoAFile)
{
    const auto filed = std::get<CommandLine>(parsed({"--log-file", "a.log", "--quiet", "check"}));
    EXPECT_EQ(filed.logFile, u"a.log"_s);
    EXPECT_EQ(filed.logLevel, u"info"_s);
    EXPECT_TRUE(filed.quiet);
    const auto both = std::get<CommandLine>(parsed({"check", "--log-file", "a.log", "--log-level", "error"}));
    EXPECT_EQ(both.logLevel, u"error"_s);
    EXPECT_EQ(std::get<CommandLine>(parsed({"check", "--log-level", "critical"})).logLevel, u"critical"_s);
    EXPECT_TRUE(answer({"check", "--log-file", ""}).isError);
}

TEST(CommandLine, TakesTheWordsOfACauseToExplain)
{
    EXPECT_EQ(std::get<CommandLine>(parsed({"explain"})).cause, QString());
    EXPECT_EQ(std::get<CommandLine>(parsed({"explain", "32"})).cause, u"32"_s);
    EXPECT_EQ(std::get<CommandLine>(parsed({"explain", "Нет", "связи", "с ФР"})).cause, u"Нет связи с ФР"_s);
}

TEST(CommandLine, TakesTheDocumentsToCollect)
{
    EXPECT_EQ(
        std::get<CommandLine>(parsed({"collect", "u-1", "u-2"})).uuids, (QStringList{u"u-1"_s, u"u-2"_s}));
    EXPECT_TRUE(answer({"collect"}).isError);
}

TEST(CommandLine, LimitsTheTimeOfFurtherAttempts)
{
    using namespace std::chrono_literals;
    const std::pair<const char*, std::chrono::seconds> times[] = {
        {"0", 0s}, {"45", 45s}, {"30s", 30s}, {"10m", 10min}, {"1h", 1h}, {"999999h", 999999h}};
    for (const auto& [text, time] : times)
        EXPECT_EQ(std::get<CommandLine>(parsed({"sell", "a", "--retry-for", text})).retryFor, time) << text;
    EXPECT_EQ(std::get<CommandLine>(parsed({"sell", "a"})).retryFor, 0s);
    for (const char* text : {"", "h", "-1s", "1d", "1.5h", "1 h", "1000000s"})
        EXPECT_TRUE(answer({"sell", "a", "--retry-for", text}).isError) << text;
}

TEST(CommandLine, StreamsStandardInputAlone)
{
    EXPECT_TRUE(std::get<CommandLine>(parsed({"send", "-", "--stream"})).streams);
    EXPECT_FALSE(std::get<CommandLine>(parsed({"send", "-"})).streams);
    EXPECT_TRUE(answer({"sell", "a", "--stream"}).isError);
    EXPECT_TRUE(answer({"sell", "-", "-", "--stream"}).isError);
}

TEST(CommandLine, NamesAJournalOrNone)
{
    for (const char* command : {"sell", "send"}) {
        EXPECT_TRUE(std::get<CommandLine>(parsed({command, "a"})).usesJournal);
        EXPECT_EQ(std::get<CommandLine>(parsed({command, "a"})).journal, QString());
        EXPECT_EQ(std::get<CommandLine>(parsed({command, "a", "--journal", "j.db"})).journal, u"j.db"_s);
        EXPECT_FALSE(std::get<CommandLine>(parsed({command, "a", "--no-journal"})).usesJournal);
        EXPECT_TRUE(answer({command, "a", "--no-journal", "--journal", "j.db"}).isError);
        EXPECT_TRUE(answer({command, "a", "--journal", ""}).isError);
        EXPECT_TRUE(answer({command, "a", "--journal="}).isError);
    }
    EXPECT_TRUE(answer({"compose", "a", "--no-journal"}).isError);
}

TEST(CommandLine, KnowsEveryCommand)
{
    EXPECT_EQ(std::get<CommandLine>(parsed({"check"})).command, Command::Check);
    EXPECT_EQ(std::get<CommandLine>(parsed({"send", "a"})).command, Command::Send);
    EXPECT_EQ(std::get<CommandLine>(parsed({"compose", "a"})).command, Command::Compose);
    EXPECT_EQ(std::get<CommandLine>(parsed({"doctor"})).command, Command::Doctor);
    const auto bundle = std::get<CommandLine>(parsed({"bundle", "a.tar.gz"}));
    EXPECT_EQ(bundle.command, Command::Bundle);
    EXPECT_EQ(bundle.bundle, u"a.tar.gz"_s);
    EXPECT_TRUE(answer({"bundle"}).isError);
    const auto info = std::get<CommandLine>(parsed({"info", "u-1"}));
    EXPECT_EQ(info.command, Command::Info);
    EXPECT_EQ(info.uuid, u"u-1"_s);
}

TEST(CommandLine, KnowsTheSubcommandsOfTheQueue)
{
    const auto line = [](const std::vector<const char*>& arguments) {
        return std::get<CommandLine>(parsed(arguments));
    };
    EXPECT_EQ(line({"queue", "add", "a", "b"}).command, Command::Queue);
    EXPECT_EQ(line({"queue", "add", "a", "b"}).files, (QStringList{u"a"_s, u"b"_s}));
    EXPECT_TRUE(line({"queue", "work", "--until-empty"}).queue.untilEmpty);
    EXPECT_EQ(line({"queue", "wait", "r1", "r2"}).queue.ids, (QStringList{u"r1"_s, u"r2"_s}));
    EXPECT_EQ(line({"queue", "results", "--after", "7", "--follow"}).queue.after, 7);
    EXPECT_EQ(line({"queue", "retry", "r1", "--new-id", "r2"}).queue.newId, u"r2"_s);
    EXPECT_EQ(line({"queue", "prune", "--older-than", "90d"}).queue.days, 90);
    EXPECT_TRUE(line({"queue", "--json", "list"}).json);
    const std::vector<std::vector<const char*>> wrong{{"queue"}, {"queue", "add"}, {"queue", "show"},
        {"queue", "show", "r1", "r2"}, {"queue", "list", "--state", "lost"}, {"queue", "prune"},
        {"queue", "prune", "--older-than", "0d"}, {"queue", "prune", "--older-than", "90"},
        {"queue", "results", "--after", "-1"}, {"queue", "retry", "r1", "--new-id", ""}};
    for (const auto& arguments : wrong)
        EXPECT_TRUE(answer(arguments).isError) << arguments.back();
}

TEST(CommandLine, ShowsAnExampleFirstInEveryHelp)
{
    for (const char* command : {"describe", "check", "sell", "send", "info", "compose", "queue"}) {
        const CommandLineText help = answer({command, "--help"});
        EXPECT_FALSE(help.isError);
        const QStringList lines = help.text.split(u'\n');
        EXPECT_EQ(lines.value(0), u"Example:"_s) << command;
        EXPECT_TRUE(lines.value(1).startsWith(u"  frhost "_s)) << command;
        EXPECT_TRUE(lines.value(1).contains(QString::fromLatin1(command))) << command;
    }
    EXPECT_TRUE(answer({"queue", "retry", "--help"}).text.startsWith(u"Example:\n  frhost queue retry "_s));
    EXPECT_TRUE(answer({"queue", "--help"}).text.contains(u" List the receipts\n"_s));
    EXPECT_TRUE(answer({"--help"}).text.startsWith(u"Example:\n  frhost "_s));
}

TEST(CommandLine, ExplainsEveryExitStatus)
{
    const QString help = answer({"--help"}).text;
    for (int status = 0; status <= 5; ++status)
        EXPECT_TRUE(help.contains(u"\n  %1  "_s.arg(status))) << status;
}

TEST(CommandLine, TellsTheVersion)
{
    const CommandLineText version = answer({"--plugin", "/no/such.so", "--version"});
    EXPECT_FALSE(version.isError);
    const QStringList lines = version.text.trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), 5) << version.text.toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"frhost 1."_s));
    EXPECT_EQ(lines[2], u"Qt "_s + QString::fromLatin1(qVersion()));
    // The libraries themselves, as they are loaded.
    EXPECT_EQ(lines[3], loadedVersion("curl_version").section(u' ', 0, 0).replace(u'/', u' '));
    EXPECT_EQ(lines[4], loadedVersion("OpenSSL_version").section(u' ', 0, 1));
}

TEST(CommandLine, TellsTheVersionOfThePlugin)
{
    const QString file = QStringLiteral(PLUGIN_FOLDER) + u"/libatolonline.so"_s;
    const std::string path = file.toStdString();
    const QString line = answer({"--plugin", path.c_str(), "--version"}).text.section(u'\n', 1, 1);
    EXPECT_TRUE(line.startsWith(u"plugin atolonline 1."_s)) << line.toStdString();
    EXPECT_TRUE(line.endsWith(u": "_s + file)) << line.toStdString();
    EXPECT_EQ(answer({"--plugin", "/no/such.so", "--version"}).text.section(u'\n', 1, 1),
        u"plugin /no/such.so: no such plugin file"_s);
}

TEST(CommandLine, HelpsWithACommand)
{
    for (const char* command : {"describe", "check", "sell", "send", "info", "compose"})
        EXPECT_EQ(answer({"help", command}).text, answer({command, "--help"}).text) << command;
    EXPECT_EQ(answer({"help"}).text, answer({"--help"}).text);
    EXPECT_FALSE(answer({"help", "sell"}).isError);
    EXPECT_TRUE(answer({"help", "refund"}).isError);
    EXPECT_EQ(answer({"help", "sel"}).text, u"There is no command \"sel\". Did you mean \"sell\"?"_s);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    EXPECT_TRUE(answer({}).isError);
    EXPECT_TRUE(answer({"refund"}).isError);
    EXPECT_TRUE(answer({"sell"}).isError);
    EXPECT_TRUE(answer({"info"}).isError);
    EXPECT_TRUE(answer({"check", "a"}).isError);
    EXPECT_TRUE(answer({"--log-level", "loud", "check"}).isError);
    EXPECT_TRUE(answer({"--password", "x", "check"}).isError);
    EXPECT_TRUE(answer({"sell", "--qr-dir", "", "a"}).isError);
    EXPECT_TRUE(answer({"sell", "--qr-dir=", "a"}).isError);
}

TEST(CommandLine, TellsAProgramWhatIsWrongWithIt)
{
    EXPECT_TRUE(answer({"--json", "refund"}).json);
    EXPECT_TRUE(answer({"sell", "--foo", "--json"}).json);
    EXPECT_TRUE(answer({"--json"}).json);
    EXPECT_FALSE(answer({"refund"}).json);
    EXPECT_FALSE(answer({"refund", "--", "--json"}).json);
    EXPECT_FALSE(answer({"--json", "sell", "--help"}).json) << "this is what was asked for";
}

} // namespace
