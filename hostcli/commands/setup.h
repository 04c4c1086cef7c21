#pragma once

#include "hostcli/commandline.h"
#include "till/config/registerconfig.h"
#include "till/device/plugindiscovery.h"

namespace frhost {

/// The folders that may hold frhost/register.ini, in this order: the user's, then that of the machine.
[[nodiscard]] QStringList configFolders();

/// The configuration file that the command line names, else the one that FRHOST_CONFIG names, else the first
/// in the folders; empty when there is none.
[[nodiscard]] QString configFileOf(const CommandLine& line, const QStringList& folders);

/// The configuration in that file, its warnings shown; an empty one when there is no file. Throws
/// till::Error.
[[nodiscard]] till::RegisterConfig configOf(const CommandLine& line);

/// The same for a command that talks to the service; throws Failure when there is none.
[[nodiscard]] till::RegisterConfig serviceConfigOf(const CommandLine& line);

/// The plugin that the command line names, else the only one in the folders. Throws Failure when there is
/// none or there are several, till::Error when the file is not a plugin.
[[nodiscard]] till::PluginFile pluginOf(const CommandLine& line, const QStringList& folders);

/// The same in the folders of this installation.
[[nodiscard]] till::PluginFile pluginOf(const CommandLine& line);

} // namespace frhost
