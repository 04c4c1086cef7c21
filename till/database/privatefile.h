#pragma once

#include <QString>

namespace till {

/// Creates the folder of a file, and those above it that are missing, for their owner alone; a power cut does
/// not take them away afterwards. Returns why it could not; empty when it could.
[[nodiscard]] QString makeFolderOf(const QString& file);

/// Creates an empty file for its owner alone unless it exists. Returns why it could not, or why the file
/// cannot be written.
[[nodiscard]] QString makePrivateFile(const QString& file);

} // namespace till
