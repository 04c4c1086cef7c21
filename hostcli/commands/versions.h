#pragma once

#include <QString>

namespace frhost {

/// What `--version` shows: this program, the plugin (empty: the one that is installed), and the libraries
/// that are loaded.
[[nodiscard]] QString versions(const QString& plugin);

} // namespace frhost
