#pragma once

#include "emulator/values/json.h"

#include <cstdint>
#include <optional>

namespace emulator {

/// `value` in whole 1/`scale` parts (100: kopecks of roubles; 1000: thousandths of a quantity).
/// Clients send unrounded doubles, where 0.1 + 0.2 arrives as 0.30000000000000004: a value within 0.000001 of
/// such a part counts as that part. Anything else has too many decimals and gives nothing, as do values
/// beyond a thousand million.
[[nodiscard]] std::optional<std::int64_t> wholeParts(double value, int scale);

/// The same for a number in JSON; nothing for a value of another type.
[[nodiscard]] std::optional<std::int64_t> wholePartsOf(const Json& value, int scale);

/// Roubles of an amount of kopecks.
[[nodiscard]] double roubles(std::int64_t kopecks);

} // namespace emulator
