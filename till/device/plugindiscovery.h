#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace frhost {

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

/// The plugin to use: `file` when it is not empty, else the only one in the folders. Throws Failure (usage)
/// when there is none, when there are several, or when the file is no fiscal-register plugin.
[[nodiscard]] PluginFile choosePlugin(const QString& file, const QStringList& folders);

} // namespace frhost
