#include "hostcli/commands/setup.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/console.h"
#include "till/journal/journalfile.h"
#include "till/text.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString paths(const QList<PluginFile>& plugins)
{
    QStringList list;
    for (const PluginFile& plugin : plugins)
        list << plugin.path;
    return list.join(u", "_s);
}

QStringList configFilesIn(QStringList folders)
{
    for (QString& folder : folders)
        folder += u"/frhost/register.ini"_s;
    return folders;
}

QString waysOut()
{
    return Text::tr("Correct the cause, name another file with --journal FILE, or do without a journal with "
                    "--no-journal.");
}

} // namespace

QStringList configFolders()
{
    QStringList folders;
    const QString home = qEnvironmentVariable("HOME");
    QString own = qEnvironmentVariable("XDG_CONFIG_HOME");
    // By the rules of XDG, an empty variable is not set, and a relative path is ignored.
    if (own.isEmpty() && !home.isEmpty())
        own = home + u"/.config"_s;
    if (own.startsWith(u'/'))
        folders << own;
    folders << u"/etc"_s;
    return folders;
}

QString configFileOf(const CommandLine& line, const QStringList& folders)
{
    if (!line.config.isEmpty())
        return line.config;
    if (const QString named = qEnvironmentVariable("FRHOST_CONFIG"); !named.isEmpty())
        return named;
    for (const QString& file : configFilesIn(folders)) {
        if (QFileInfo::exists(file))
            return file;
    }
    return {};
}

RegisterConfig configOf(const CommandLine& line)
{
    const QString file = configFileOf(line, configFolders());
    if (file.isEmpty())
        return {};
    const RegisterConfig config = readRegisterConfig(file);
    for (const QString& warning : config.warnings)
        Console::instance().line(warning);
    return config;
}

RegisterConfig serviceConfigOf(const CommandLine& line)
{
    RegisterConfig config = configOf(line);
    if (config.file.isEmpty())
        throw Failure(ExitCode::LocalFailure, Text::tr("There is no configuration. Name one with --config "
                                                       "FILE or FRHOST_CONFIG, or create one of: %1.")
                                                  .arg(configFilesIn(configFolders()).join(u", "_s)));
    return config;
}

PluginFile pluginOf(const CommandLine& line, const QStringList& folders)
{
    if (!line.plugin.isEmpty())
        return pluginAt(line.plugin);
    if (const QString named = qEnvironmentVariable("FRHOST_PLUGIN"); !named.isEmpty())
        return pluginAt(named);
    const QList<PluginFile> plugins = findPlugins(folders);
    if (plugins.isEmpty())
        throw Failure(
            ExitCode::LocalFailure, Text::tr("No fiscal-register plugin in %1. Name one with --plugin FILE.")
                                        .arg(folders.join(u", "_s)));
    if (plugins.size() > 1)
        throw Failure(ExitCode::LocalFailure,
            Text::tr("Several fiscal-register plugins: %1. Choose one with --plugin FILE or FRHOST_PLUGIN.")
                .arg(paths(plugins)));
    return plugins.first();
}

PluginFile pluginOf(const CommandLine& line)
{
    return pluginOf(line, pluginFolders(QCoreApplication::applicationDirPath()));
}

std::unique_ptr<Journal> journalOf(const CommandLine& line)
{
    if (!line.usesJournal)
        return nullptr;
    const QString file = line.journal.isEmpty() ? defaultJournalFile() : line.journal;
    if (file.isEmpty())
        throw Failure(ExitCode::LocalFailure,
            Text::tr("There is no folder for the journal, because HOME is not set. Nothing was sent.") +
                u' ' + waysOut());
    try {
        if (line.journal.isEmpty())
            createFolderOf(file);
        return std::make_unique<Journal>(file);
    } catch (const JournalError& error) {
        throw Failure(ExitCode::LocalFailure,
            error.message() + u' ' + Text::tr("Nothing was sent.") + u' ' + waysOut());
    }
}

void requireUuid(const QString& uuid)
{
    const auto isPlain = [](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || c == u'-' || c == u'_';
    };
    if (uuid.isEmpty() || !std::all_of(uuid.begin(), uuid.end(), isPlain))
        throw Failure(
            ExitCode::LocalFailure, Text::tr("\"%1\" is not the identifier of a document").arg(uuid));
}

LimitChecks limitChecksOf(const CommandLine& line)
{
    return {line.strict, [](const QString& warning) { Console::instance().line(warning, Urgency::Warning); }};
}

QString exchangeFileOf(const CommandLine& line)
{
    const QString journal = line.journal.isEmpty() ? defaultJournalFile() : line.journal;
    return line.usesJournal && !journal.isEmpty() ? journal + u"-exchanges.jsonl"_s : QString();
}

Error explained(const JournalError& error)
{
    return Error(error.problem(), error.message() + u' ' + waysOut());
}

} // namespace frhost
