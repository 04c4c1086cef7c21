#pragma once

#include <string>

namespace emulator {

/// A random UUID of version 4 in lower case.
[[nodiscard]] std::string newUuid();

/// A random token of 128 characters.
[[nodiscard]] std::string newToken();

} // namespace emulator
