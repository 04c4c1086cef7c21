#include "till/device/plugindiscovery.h"

#include "hostcli/failure.h"
#include "till/text.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QPluginLoader>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

QJsonObject describedBy(const QJsonObject& metaData)
{
    return metaData.value(u"MetaData"_s).toObject();
}

bool offersFiscalRegisters(const QJsonObject& metaData)
{
    return describedBy(metaData).value(u"type"_s).toString() == u"fr"_s;
}

QStringList paths(const QList<PluginFile>& plugins)
{
    QStringList result;
    for (const PluginFile& plugin : plugins)
        result << plugin.path;
    return result;
}

} // namespace

QString PluginFile::name() const
{
    return describedBy(metaData).value(u"name"_s).toString();
}

QStringList pluginFolders(const QString& programFolder)
{
    QStringList folders;
    for (const char* relative : {"../plugins", "../lib/frhost/plugins"})
        folders << QDir::cleanPath(programFolder + u'/' + QString::fromLatin1(relative));
    return folders;
}

QList<PluginFile> findPlugins(const QStringList& folders)
{
    QList<PluginFile> plugins;
    for (const QString& folder : folders) {
        for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
            if (!QLibrary::isLibrary(entry.filePath()))
                continue;
            const QJsonObject metaData = QPluginLoader(entry.filePath()).metaData();
            if (offersFiscalRegisters(metaData))
                plugins << PluginFile{entry.filePath(), metaData};
        }
    }
    return plugins;
}

PluginFile choosePlugin(const QString& file, const QStringList& folders)
{
    if (!file.isEmpty()) {
        if (!QFileInfo(file).isFile())
            throw Failure(ExitCode::Usage, Text::tr("%1: there is no such plugin file").arg(file));
        const QString path = QFileInfo(file).absoluteFilePath();
        const QJsonObject metaData = QPluginLoader(path).metaData();
        if (!offersFiscalRegisters(metaData))
            throw Failure(ExitCode::Usage, Text::tr("%1: this is no fiscal-register plugin").arg(file));
        return {path, metaData};
    }
    const QList<PluginFile> plugins = findPlugins(folders);
    if (plugins.isEmpty())
        throw Failure(
            ExitCode::Usage, Text::tr("No fiscal-register plugin in %1. Name one with --plugin FILE.")
                                 .arg(folders.join(u", "_s)));
    if (plugins.size() > 1)
        throw Failure(
            ExitCode::Usage, Text::tr("Several fiscal-register plugins: %1. Choose one with --plugin FILE.")
                                 .arg(paths(plugins).join(u", "_s)));
    return plugins.first();
}

} // namespace frhost
