#include "till/device/plugindiscovery.h"

#include "till/error.h"
#include "till/text.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QPluginLoader>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QJsonObject describedBy(const QJsonObject& metaData)
{
    return metaData.value(u"MetaData"_s).toObject();
}

bool offersFiscalRegisters(const QJsonObject& metaData)
{
    return describedBy(metaData).value(u"type"_s).toString() == u"fr"_s;
}

} // namespace

QString PluginFile::name() const
{
    return describedBy(metaData).value(u"name"_s).toString();
}

QStringList pluginFolders(const QString& programFolder)
{
    QStringList folders;
    for (const char* relative : {"../plugins", INSTALLED_PLUGINS})
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

PluginFile pluginAt(const QString& file)
{
    if (!QFileInfo(file).isFile())
        throw Error(Problem::Setup, Text::tr("%1: no such plugin file").arg(file));
    const QString path = QFileInfo(file).absoluteFilePath();
    const QJsonObject metaData = QPluginLoader(path).metaData();
    if (!offersFiscalRegisters(metaData))
        throw Error(Problem::Setup, Text::tr("%1: not a fiscal-register plugin").arg(file));
    return {path, metaData};
}

QString versionOf(const PluginFile& plugin)
{
    using Version = const char* (*)();
    const auto version = reinterpret_cast<Version>(QLibrary::resolve(plugin.path, "frdriver_plugin_version"));
    return version ? QString::fromUtf8(version()) : QString();
}

// Qt's metadata has no patch level.
QString qtVersionOf(const PluginFile& plugin)
{
    const int version = plugin.metaData.value(u"version"_s).toInt();
    return u"%1.%2"_s.arg(version >> 16 & 0xFF).arg(version >> 8 & 0xFF);
}

} // namespace till
