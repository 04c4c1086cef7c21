#pragma once

#include <QString>

namespace frhost {

/// The text without control characters, which could move a terminal's cursor; each becomes U+FFFD.
[[nodiscard]] QString printable(QString text);

} // namespace frhost
