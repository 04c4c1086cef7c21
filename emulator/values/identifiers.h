#pragma once

#include <string>

namespace emulator {

/// A random version 4 UUID in lower case.
[[nodiscard]] std::string newUuid();

/// A random token of 128 characters.
[[nodiscard]] std::string newToken();

} // namespace emulator
