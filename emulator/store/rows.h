#pragma once

#include "emulator/store/exchange.h"
#include "emulator/store/sqlite.h"

#include <string>

namespace emulator {

/// Stored for an exchange without an error code.
inline constexpr int noCode = -1;

/// The exchange in the first twelve columns of a row.
[[nodiscard]] Exchange readExchange(const sqlite::Rows& rows);

/// No pattern means any id.
[[nodiscard]] std::string patternOf(const std::string& pattern);

} // namespace emulator
