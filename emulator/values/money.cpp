#include "emulator/values/money.h"

#include <cmath>

namespace emulator {

std::optional<std::int64_t> wholeParts(double value, int scale)
{
    constexpr double largest = 1e9;
    constexpr double tolerance = 1e-6;
    if (!(std::abs(value) <= largest))
        return std::nullopt;
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
