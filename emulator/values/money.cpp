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

double roubles(std::int64_t kopecks)
{
    return static_cast<double>(kopecks) / 100;
}

} // namespace emulator
