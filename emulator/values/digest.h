#pragma once

#include <string>
#include <string_view>

namespace emulator {

/// The SHA-256 digest of `text` in hexadecimal digits.
[[nodiscard]] std::string digestOf(std::string_view text);

} // namespace emulator
