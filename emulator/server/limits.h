#pragma once

#include <chrono>
#include <cstddef>

namespace emulator {

/// What the server allows its clients.
struct Limits
{
    std::size_t headerBytes = 16 * 1024;
    std::size_t bodyBytes = 1024 * 1024;
    /// Connections of all clients together and of those with one address.
    std::size_t connections = 4096;
    std::size_t connectionsOfPeer = 2048;
    /// Bytes of requests that arrive and of answers that leave, likewise.
    std::size_t memory = 128 * 1024 * 1024;
    std::size_t memoryOfPeer = 64 * 1024 * 1024;
    /// Connections that follow events.
    std::size_t followers = 64;
    /// Time for a whole request to arrive, and for the next one on an open connection.
    std::chrono::seconds idle{120};
};

} // namespace emulator
