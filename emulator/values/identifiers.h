#pragma once

#include <string>

namespace emulator {

/// A random version 4 UUID in lower case.
[[nodiscard]] std::string newUuid();

} // namespace emulator
