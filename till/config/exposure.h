#pragma once

#include <QString>
#include <QStringList>

#include <sys/stat.h>

namespace till {

/// What to tell the user when others than its owner can read a file with a password: its mode and how to fix
/// it. Empty when they cannot, and for anything but a regular file.
///
/// `reader` is the user who has to be able to read it afterwards.
[[nodiscard]] QString exposure(const QString& path, const struct stat& status, uid_t reader);

/// The same when others than its owner can change a configuration.
[[nodiscard]] QString changeability(const QString& path, const struct stat& status, uid_t reader);

/// The same when the configuration belongs to neither the user nor root: its owner can change it.
[[nodiscard]] QString ownership(const QString& path, const struct stat& status, uid_t reader);

/// One text for each folder in which others than its owner can put another file in the place of this
/// configuration: the folder of `path`, and where that is a link, the one of the file that it leads to.
[[nodiscard]] QStringList replaceability(const QString& path, uid_t reader);

} // namespace till
