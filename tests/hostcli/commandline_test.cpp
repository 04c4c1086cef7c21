#include "hostcli/commandline.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

#include <vector>

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

TEST(CommandLine, HoldsTheCommandWithOptionsBeforeAndBehindIt)
{
    const auto line = std::get<CommandLine>(parsed(
        {"--config", "r.ini", "sell", "a.json", "-", "--json", "--log-level", "info", "--plugin", "p.so"}));
    EXPECT_EQ(line.command, Command::Sell);
    EXPECT_EQ(line.config, QStringLiteral("r.ini"));
    EXPECT_EQ(line.plugin, QStringLiteral("p.so"));
    EXPECT_TRUE(line.json);
    EXPECT_EQ(line.logLevel, QStringLiteral("info"));
    EXPECT_EQ(line.files, (QStringList{QStringLiteral("a.json"), QStringLiteral("-")}));
}

TEST(CommandLine, HasQuietDefaults)
{
    const auto line = std::get<CommandLine>(parsed({"describe"}));
    EXPECT_EQ(line.command, Command::Describe);
    EXPECT_EQ(line.config, QString());
    EXPECT_EQ(line.plugin, QString());
    EXPECT_FALSE(line.json);
    EXPECT_EQ(line.logLevel, QStringLiteral("warning"));
}

TEST(CommandLine, KnowsEveryCommand)
{
    EXPECT_EQ(std::get<CommandLine>(parsed({"check"})).command, Command::Check);
    EXPECT_EQ(std::get<CommandLine>(parsed({"send", "a"})).command, Command::Send);
    EXPECT_EQ(std::get<CommandLine>(parsed({"compose", "a"})).command, Command::Compose);
    const auto info = std::get<CommandLine>(parsed({"info", "u-1"}));
    EXPECT_EQ(info.command, Command::Info);
    EXPECT_EQ(info.uuid, QStringLiteral("u-1"));
}

TEST(CommandLine, ShowsAnExampleFirstInEveryHelp)
{
    for (const char* command : {"describe", "check", "sell", "send", "info", "compose"}) {
        const CommandLineText help = answer({command, "--help"});
        EXPECT_FALSE(help.isError);
        const QStringList lines = help.text.split(u'\n');
        EXPECT_EQ(lines.value(0), QStringLiteral("Example:")) << command;
        EXPECT_TRUE(lines.value(1).startsWith(QStringLiteral("  frhost "))) << command;
        EXPECT_TRUE(lines.value(1).contains(QString::fromLatin1(command))) << command;
    }
    EXPECT_TRUE(answer({"--help"}).text.startsWith(QStringLiteral("Example:\n  frhost ")));
}

TEST(CommandLine, TellsTheVersion)
{
    const CommandLineText version = answer({"--version"});
    EXPECT_FALSE(version.isError);
    EXPECT_TRUE(version.text.startsWith(QStringLiteral("frhost 1."))) << version.text.toStdString();
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
}

} // namespace
