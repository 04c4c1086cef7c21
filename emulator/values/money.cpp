#include "emulator/values/money.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace emulator {

std::optional<std::int64_t> wholeParts(double value, int scale)
{
    constexpr double largest = 1e10;
    if (!(std::abs(value) <= largest))
        return std::nullopt;
    // Doubles around the largest amounts are more than a millionth apart.
    constexpr double steps = 4 * std::numeric_limits<double>::epsilon();
    const double tolerance = std::max(std::min(1e-6, 1e-3 / scale), std::abs(value) * steps);
    const double parts = std::round(value * scale);
    if (std::abs(value - parts / scale) > tolerance)
        return std::nullopt;
    return static_cast<std::int64_t>(parts);
}

std::optional<std::int64_t> wholePartsOf(const Json& value, int scale)
{
    return value.is_number() ? wholeParts(value.get<double>(), scale) : std::nullopt;
}

double roubles(std::int64_t kopecks)
{
    return static_cast<double>(kopecks) / 100;
}

} // namespace emulator
