#pragma once

#include <QString>

#include <sys/stat.h>

namespace till {

/// What to tell the user when others than its owner can read a file with a password: its mode and the command
/// that fixes it. Empty when they cannot, and for anything but a regular file.
///
/// `reader` is the user who has to be able to read it afterwards.
[[nodiscard]] QString exposure(const QString& path, const struct stat& status, uid_t reader);

} // namespace till
