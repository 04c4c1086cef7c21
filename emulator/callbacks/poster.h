#pragma once

#include "emulator/callbacks/loopbackurl.h"

#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <string>

namespace emulator {

/// A request to a program on this machine and its answer as they were on the wire.
struct Delivery
{
    std::string request{};
    /// Empty if there was none.
    std::string answer{};
    /// HTTP status of the answer, 0 if there was none.
    int status = 0;
    /// Why there was none.
    std::string failure{};
};

/// Posts JSON. The only place of the program that connects to anything, and only to loopback addresses.
/// Follows no redirects; `patience` is for the whole exchange.
[[nodiscard]] boost::asio::awaitable<Delivery> post(
    LoopbackUrl url, std::string body, std::chrono::milliseconds patience);

} // namespace emulator
