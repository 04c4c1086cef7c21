#pragma once

#include <chrono>
#include <cstddef>

namespace emulator {

struct CallbackLimits
{
    /// Calls at the same time.
    std::size_t underWay = 16;
    /// Documents whose call is still to come.
    std::size_t waiting = 100'000;
    /// Time for a whole call.
    std::chrono::milliseconds patience{10'000};
};

} // namespace emulator
