#pragma once

#include "emulator/values/json.h"

#include <cstdint>
#include <optional>

namespace emulator {

/// `value` as a whole number of 1/`scale` units (100: kopecks in roubles; 1000: thousandths of a quantity).
/// Clients send unrounded doubles, and 0.1 + 0.2 arrives as 0.30000000000000004, so a value within 0.000001,
/// and within a thousandth of a unit, of a whole number of units counts as that number. Returns nothing for a
/// value with more decimals and for one above ten thousand million.
[[nodiscard]] std::optional<std::int64_t> wholeParts(double value, int scale);

/// The same for a JSON number; nothing for any other type.
[[nodiscard]] std::optional<std::int64_t> wholePartsOf(const Json& value, int scale);

[[nodiscard]] double roubles(std::int64_t kopecks);

} // namespace emulator
