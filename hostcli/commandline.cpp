#include "hostcli/commandline.h"

#include "hostcli/commands/versions.h"
#include "hostcli/helptext.h"
#include "hostcli/log/loglines.h"
#include "hostcli/queue/queuearguments.h"
#include "reference/reference.h"
#include "till/text.h"

#include <QRegularExpression>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>

#include <chrono>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

using namespace Qt::Literals::StringLiterals;

using till::Text;

namespace frhost {

namespace {

// What the parser writes into; turned into Qt's types at the end.
struct Arguments
{
    std::string config;
    std::string plugin;
    std::string logLevel;
    std::string logFile;
    std::string uuid;
    std::vector<std::string> files;
    std::vector<std::string> cause;
    std::vector<std::string> uuids;
    std::string retryFor;
    bool stream = false;
    std::string qrDir;
    std::string bundle;
    std::string journal;
    bool noJournal = false;
    bool strict = false;
    bool json = false;
    bool quiet = false;
    QueueArguments queue;
};

struct CommandInfo
{
    Command command;
    const char* name;
    const char* example;
    const char* description;
};

constexpr CommandInfo commands[] = {
    {Command::Describe, "describe", "frhost describe",
        QT_TRANSLATE_NOOP("Text", "Show the plugin and the register's settings")},
    {Command::Check, "check", "frhost --config register.ini check",
        QT_TRANSLATE_NOOP("Text", "Check configuration, login, group and clock; registers nothing")},
    {Command::Doctor, "doctor", "frhost --config register.ini doctor",
        QT_TRANSLATE_NOOP("Text", "The same, and what else of this machine may be the fault")},
    {Command::Bundle, "bundle", "frhost --config register.ini bundle support.tar.gz",
        QT_TRANSLATE_NOOP(
            "Text", "Collect for support: doctor, configuration, log, exchanges; secrets masked")},
    {Command::Sell, "sell", "frhost --config register.ini sell receipt.json",
        QT_TRANSLATE_NOOP("Text", "Register receipts and show their fiscal results")},
    {Command::Send, "send", "frhost --config register.ini send receipt.json",
        QT_TRANSLATE_NOOP("Text", "Send receipts without waiting; shows the service's identifiers")},
    {Command::Info, "info", "frhost --config register.ini info 0a1b2c3d-0000-1111-2222-333344445555",
        QT_TRANSLATE_NOOP("Text", "Ask the service about a document")},
    {Command::Collect, "collect", "frhost --config register.ini collect 0a1b2c3d-0000-1111-2222-333344445555",
        QT_TRANSLATE_NOOP("Text", "Wait for documents that were sent, and show their fiscal results")},
    {Command::Compose, "compose", "frhost --config register.ini compose receipt.json",
        QT_TRANSLATE_NOOP("Text", "Show what would be sent for receipts; sends nothing")},
    {Command::Explain, "explain", "frhost explain 32",
        QT_TRANSLATE_NOOP("Text", "Explain a code of the service or a cause, and what to do")},
    {Command::Queue, "queue", "frhost --config register.ini queue add receipt.json",
        QT_TRANSLATE_NOOP("Text", "Hand receipts over, and register them later")},
};

std::string described(const CommandInfo& info)
{
    return (Text::tr("Example:\n  %1").arg(QString::fromLatin1(info.example)) + u"\n\n"_s +
            Text::tr(info.description))
        .toStdString();
}

// Also accepted is the older name of the highest level.
std::string flawOfLevel(const std::string& level)
{
    const QStringList levels = logLevels();
    if (levels.contains(QString::fromStdString(level)) || level == "critical")
        return {};
    return Text::tr("\"%1\" is not a level; the levels are %2")
        .arg(QString::fromStdString(level), levels.join(u", "_s))
        .toStdString();
}

std::string flawOfFile(const std::string& name)
{
    return name.empty() ? Text::tr("the name of the file is empty").toStdString() : std::string();
}

void addLogOptions(CLI::App& app, Arguments& arguments)
{
    app.add_option("--log-level", arguments.logLevel,
           Text::tr("Lowest level of log lines to show: debug, info, warning or error").toStdString())
        ->option_text("LEVEL")
        ->type_name("TEXT:{" + logLevels().join(u',').toStdString() + "}")
        ->check(flawOfLevel);
    app.add_option("--log-file", arguments.logFile,
           Text::tr("Append the log to this file instead of showing it; from level info, unless "
                    "--log-level says otherwise")
               .toStdString())
        ->option_text("FILE")
        ->check(flawOfFile);
    app.add_flag("--quiet", arguments.quiet,
        Text::tr("No messages as long as all goes well, and no line with the seconds waited").toStdString());
}

void addGlobalOptions(CLI::App& app, Arguments& arguments)
{
    app.add_option("--config", arguments.config,
           Text::tr("INI file with the register's settings; otherwise $FRHOST_CONFIG, then "
                    "frhost/register.ini in $XDG_CONFIG_HOME (~/.config) or /etc")
               .toStdString())
        ->option_text("FILE");
    app.add_option("--plugin", arguments.plugin,
           Text::tr("Plugin library, instead of $FRHOST_PLUGIN or the one installed").toStdString())
        ->option_text("FILE");
    app.add_flag("--json", arguments.json, Text::tr("One line of JSON for each result").toStdString());
    addLogOptions(app, arguments);
    app.set_version_flag(
        "--version",
        [&arguments] { return versions(QString::fromStdString(arguments.plugin)).toStdString(); },
        Text::tr("Show the versions of program, plugin and libraries, and exit").toStdString());
}

void addJournalOptions(CLI::App& command, Arguments& arguments)
{
    CLI::Option* file =
        command
            .add_option("--journal", arguments.journal,
                Text::tr("Journal of the receipts that were sent, instead of the user's own").toStdString())
            ->option_text("FILE")
            ->check(flawOfFile);
    command
        .add_flag("--no-journal", arguments.noJournal,
            Text::tr("Keep no journal: the service notices an id that is used twice by the total alone, "
                     "another register not at all")
                .toStdString())
        ->excludes(file);
}

// A number of seconds, minutes or hours; none for another text.
std::optional<std::chrono::seconds> durationIn(const std::string& text)
{
    static const QRegularExpression form(u"^(\\d{1,6})([smh]?)$"_s);
    const auto match = form.match(QString::fromStdString(text));
    if (!match.hasMatch())
        return std::nullopt;
    const QString unit = match.captured(2);
    const std::chrono::seconds one = unit == "h"_L1   ? std::chrono::hours(1)
                                     : unit == "m"_L1 ? std::chrono::minutes(1)
                                                      : std::chrono::seconds(1);
    return match.captured(1).toInt() * one;
}

void addPersistence(CLI::App& command, Arguments& arguments)
{
    command
        .add_option("--retry-for", arguments.retryFor,
            Text::tr("Try a receipt again for so long where its outcome is unknown: 30s, 10m, 1h")
                .toStdString())
        ->option_text("TIME")
        ->check([](const std::string& text) {
            return durationIn(text) ? std::string()
                                    : Text::tr("the time is a number with s, m or h").toStdString();
        });
    command.add_flag("--stream", arguments.stream,
        Text::tr("Take receipts from standard input one by one as they come, and answer each at once")
            .toStdString());
}

CLI::App* addCommand(CLI::App& app, const CommandInfo& info, Arguments& arguments)
{
    CLI::App* command = app.add_subcommand(info.name, described(info));
    command->fallthrough();
    command->group(Text::tr("Commands").toStdString());
    if (info.command == Command::Queue)
        arguments.queue.addTo(*command, arguments.files);
    else if (info.command == Command::Info)
        command
            ->add_option(
                "UUID", arguments.uuid, Text::tr("The service's identifier of the document").toStdString())
            ->required();
    else if (info.command == Command::Collect)
        command
            ->add_option(
                "UUID", arguments.uuids, Text::tr("The service's identifiers of the documents").toStdString())
            ->option_text("...")
            ->required();
    else if (info.command == Command::Explain)
        command
            ->add_option("CAUSE", arguments.cause,
                Text::tr("Code of the service, or words of a message or of the log; without it, all causes")
                    .toStdString())
            ->option_text("...");
    else if (info.command == Command::Bundle)
        command->add_option("FILE", arguments.bundle, Text::tr("The archive to write, .tar.gz").toStdString())
            ->required()
            ->check(flawOfFile);
    else if (info.command != Command::Describe && info.command != Command::Check &&
             info.command != Command::Doctor)
        command
            ->add_option("FILE", arguments.files,
                Text::tr("Receipts as a JSON object or JSON Lines; - is standard input").toStdString())
            ->option_text("...")
            ->required();
    if (info.command == Command::Sell || info.command == Command::Send || info.command == Command::Compose)
        command->add_flag("--strict", arguments.strict,
            Text::tr("Refuse receipts that go beyond the limits of the service, instead of warning")
                .toStdString());
    if (info.command == Command::Sell)
        command
            ->add_option("--qr-dir", arguments.qrDir,
                Text::tr("Folder for pictures of the receipts' QR codes").toStdString())
            ->option_text("DIR")
            ->check([](const std::string& name) {
                return name.empty() ? Text::tr("the folder has no name").toStdString() : std::string();
            });
    const bool submits = info.command == Command::Sell || info.command == Command::Send;
    if (submits || info.command == Command::Doctor || info.command == Command::Bundle)
        addJournalOptions(*command, arguments);
    if (submits)
        addPersistence(*command, arguments);
    return command;
}

// Returns the command, whose arguments name another one.
CLI::App* addHelp(CLI::App& app, std::vector<std::string>& names)
{
    const QString text = Text::tr("Example:\n  %1").arg(u"frhost help sell"_s) + u"\n\n"_s +
                         Text::tr("Show the help of a command");
    CLI::App* command = app.add_subcommand("help", text.toStdString());
    command->group(Text::tr("Commands").toStdString());
    command
        ->add_option(
            "COMMAND", names, Text::tr("The command; without one, the help of the program").toStdString())
        ->option_text("...");
    return command;
}

CommandLineText helpOf(const CLI::App& app, const std::vector<std::string>& names)
{
    const CLI::App* command = &app;
    std::string path = app.get_name();
    for (const std::string& name : names) {
        const auto found =
            command->get_subcommands([&](const CLI::App* child) { return child->get_name() == name; });
        if (found.empty())
            return {unknownCommand(app, fromStd(name)), true};
        command = found.front();
        path += " " + name;
    }
    // App::help() of the program would be that of the command on the command line, help.
    const std::string help = command->get_formatter()->make_help(command, path, CLI::AppFormatMode::Normal);
    return {QString::fromStdString(help), false};
}

CommandLineText endText(const CLI::App& app, const CLI::ParseError& error)
{
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(error, out, err) != 0)
        return {usageError(app, error), true};
    return {fromStd(out.str()), false};
}

// The parser may not have come so far.
bool wantsJson(int argc, const char* const* argv)
{
    for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
        if (std::string_view(argv[i]) == "--json")
            return true;
    }
    return false;
}

std::variant<CommandLine, CommandLineText> parsed(int argc, const char* const* argv)
{
    Arguments arguments;
    CLI::App app((Text::tr("Example:\n  %1").arg(u"frhost --config register.ini sell receipt.json"_s) +
                     u"\n\n"_s + Text::tr("Drives a fiscal register through its plugin."))
                     .toStdString(),
        "frhost");
    app.formatter(std::make_shared<HelpText>());
    app.set_help_flag("-h,--help", Text::tr("Show this help and exit").toStdString());
    app.footer(Text::tr("Exit status, of several the highest:\n"
                        "  0  every receipt is registered\n"
                        "  1  an error on this machine\n"
                        "  2  a receipt file is wrong; nothing was sent\n"
                        "  3  a receipt was refused\n"
                        "  4  an outcome is unknown, no connection, or interrupted\n"
                        "  5  registered according to the service, which has not proved it")
                   .toStdString());
    app.require_subcommand(1);
    addGlobalOptions(app, arguments);
    CommandLine line;
    for (const CommandInfo& info : commands)
        addCommand(app, info, arguments)->callback([&line, &info] { line.command = info.command; });
    std::vector<std::string> helped;
    const CLI::App* help = addHelp(app, helped);

    // For the build, which makes man page and completions of it.
    if (argc == 3 && std::string_view(argv[1]) == "--reference")
        return CommandLineText{fromStd(reference::made(app, argv[2])), false};
    if (argc < 2)
        return CommandLineText{fromStd(app.help()), true};
    try {
        app.parse(argc, argv);
        if (help->parsed())
            return helpOf(app, helped);
    } catch (const CLI::ParseError& error) {
        return endText(app, error);
    }
    line.config = fromStd(arguments.config);
    line.plugin = fromStd(arguments.plugin);
    line.json = arguments.json;
    line.logFile = fromStd(arguments.logFile);
    const QString usualLevel = line.logFile.isEmpty() ? u"warning"_s : u"info"_s;
    line.logLevel = arguments.logLevel.empty() ? usualLevel : fromStd(arguments.logLevel);
    line.quiet = arguments.quiet;
    line.uuid = fromStd(arguments.uuid);
    line.bundle = fromStd(arguments.bundle);
    line.qrDir = fromStd(arguments.qrDir);
    line.journal = fromStd(arguments.journal);
    line.usesJournal = !arguments.noJournal;
    line.strict = arguments.strict;
    line.streams = arguments.stream;
    line.retryFor = durationIn(arguments.retryFor).value_or(std::chrono::seconds(0));
    for (const std::string& uuid : arguments.uuids)
        line.uuids << fromStd(uuid);
    QStringList words;
    for (const std::string& word : arguments.cause)
        words << fromStd(word);
    line.cause = words.join(u' ').trimmed();
    line.queue = arguments.queue.line();
    for (const std::string& file : arguments.files)
        line.files << fromStd(file);
    if (line.streams && line.files != QStringList{u"-"_s})
        return CommandLineText{Text::tr("--stream reads standard input: its only FILE is -"), true};
    return line;
}

} // namespace

std::variant<CommandLine, CommandLineText> parseCommandLine(int argc, const char* const* argv)
{
    auto result = parsed(argc, argv);
    if (auto* text = std::get_if<CommandLineText>(&result))
        text->json = text->isError && wantsJson(argc, argv);
    return result;
}

} // namespace frhost
