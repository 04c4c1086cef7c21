#include "hostcli/commands/setup.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/console.h"
#include "till/text.h"

#include <QCoreApplication>

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

} // namespace

RegisterConfig configOf(const CommandLine& line)
{
    if (line.config.isEmpty())
        return {};
    const RegisterConfig config = readRegisterConfig(line.config);
    for (const QString& warning : config.warnings)
        Console::instance().line(warning);
    return config;
}

RegisterConfig serviceConfigOf(const CommandLine& line)
{
    if (line.config.isEmpty())
        throw Failure(ExitCode::LocalFailure,
            Text::tr("This command talks to the service: name a configuration with --config FILE."));
    return configOf(line);
}

PluginFile pluginOf(const CommandLine& line, const QStringList& folders)
{
    if (!line.plugin.isEmpty())
        return pluginAt(line.plugin);
    const QList<PluginFile> plugins = findPlugins(folders);
    if (plugins.isEmpty())
        throw Failure(
            ExitCode::LocalFailure, Text::tr("No fiscal-register plugin in %1. Name one with --plugin FILE.")
                                        .arg(folders.join(u", "_s)));
    if (plugins.size() > 1)
        throw Failure(ExitCode::LocalFailure,
            Text::tr("Several fiscal-register plugins: %1. Choose one with --plugin FILE.")
                .arg(paths(plugins)));
    return plugins.first();
}

PluginFile pluginOf(const CommandLine& line)
{
    return pluginOf(line, pluginFolders(QCoreApplication::applicationDirPath()));
}

} // namespace frhost
