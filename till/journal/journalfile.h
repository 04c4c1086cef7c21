#pragma once

#include <QString>

namespace till {

/// The journal of this user: `journal.db` in the folder that systemd names in $STATE_DIRECTORY, else in
/// `frhost` below $XDG_STATE_HOME, else below `~/.local/state`. Empty when the environment names none of
/// them.
[[nodiscard]] QString defaultJournalFile();

/// Creates the folder of a file, and those above it that are missing, for their owner alone. Throws
/// JournalError.
void createFolderOf(const QString& file);

/// Creates an empty file for its owner alone unless it exists. Throws JournalError when it cannot be created
/// or written.
void createPrivateFile(const QString& file);

} // namespace till
