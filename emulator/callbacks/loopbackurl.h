#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// Long enough for any program; a header that holds much more could not be sent.
inline constexpr std::size_t longestUrl = 2048;

/// An `http://` address of a program on this machine.
struct LoopbackUrl
{
    /// Loopback addresses as numbers, to be tried in this order.
    std::vector<std::string> addresses{};
    std::uint16_t port = 80;
    /// Host and port as they were written.
    std::string authority{};
    /// Path and query.
    std::string target{};
};

/// Nothing if `url` is anything else. No name is looked up: `localhost` is this machine by definition.
[[nodiscard]] std::optional<LoopbackUrl> loopbackUrl(std::string_view url);

} // namespace emulator
