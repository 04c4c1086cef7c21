#pragma once

#include "hostcli/commandline.h"
#include "till/config/registerconfig.h"
#include "till/device/plugindiscovery.h"
#include "till/journal/journal.h"
#include "till/journal/journalerror.h"
#include "till/receipts/receiptqueue.h"

#include <memory>

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

/// The journal that the command line asks for; null for none. Throws Failure when it cannot be used.
[[nodiscard]] std::unique_ptr<till::Journal> journalOf(const CommandLine& line);

/// Throws Failure unless this may be the identifier of a document: it becomes part of the address that is
/// asked.
void requireUuid(const QString& uuid);

/// The checks of a run's receipts that the command line asks for; warnings go to the console.
[[nodiscard]] till::LimitChecks limitChecksOf(const CommandLine& line);

/// Where the exchanges of receipts that were not registered are kept: beside the journal; empty without one.
[[nodiscard]] QString exchangeFileOf(const CommandLine& line);

/// An error of the journal with what the user can do about it.
[[nodiscard]] till::Error explained(const till::JournalError& error);

} // namespace frhost
