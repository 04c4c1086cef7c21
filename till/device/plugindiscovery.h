#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace till {

/// A plugin library that offers fiscal registers.
struct PluginFile
{
    QString path;
    /// What the library carries as Qt plugin metadata: "IID", "className" and "MetaData".
    QJsonObject metaData;

    [[nodiscard]] QString name() const;
};

/// Where plugins are looked for, in this order: beside the program's folder, then where an installation puts
/// them.
[[nodiscard]] QStringList pluginFolders(const QString& programFolder);

/// The fiscal-register plugins (metadata "type" = "fr") in the folders; reads metadata only, loads nothing.
[[nodiscard]] QList<PluginFile> findPlugins(const QStringList& folders);

/// The plugin in the file. Throws Error when the file does not exist or is not a fiscal-register plugin.
[[nodiscard]] PluginFile pluginAt(const QString& file);

/// The version that the plugin tells, by a function "const char* frdriver_plugin_version()"; empty when it
/// has none. Loads the plugin.
[[nodiscard]] QString versionOf(const PluginFile& plugin);

/// The version of Qt that the plugin was built with.
[[nodiscard]] QString qtVersionOf(const PluginFile& plugin);

} // namespace till
