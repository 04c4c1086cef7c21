#pragma once

#include <chrono>
#include <cstddef>

namespace emulator {

/// What the server allows its clients.
struct Limits
{
    std::size_t headerBytes = 16 * 1024;
    std::size_t bodyBytes = 1024 * 1024;
    std::size_t connections = 4096;
    /// Time for a whole request to arrive, and for the next one on an open connection.
    std::chrono::seconds idle{120};
};

} // namespace emulator
