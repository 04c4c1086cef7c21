#pragma once

#include <chrono>
#include <cstddef>

namespace emulator {

/// What the server allows a peer.
struct Limits
{
    std::size_t headerBytes = 16 * 1024;
    std::size_t bodyBytes = 1024 * 1024;
    std::size_t connections = 4096;
    /// For a request to arrive whole, and for a kept connection to bring its next one.
    std::chrono::seconds idle{120};
};

} // namespace emulator
