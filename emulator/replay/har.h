#pragma once

#include "emulator/replay/recording.h"

#include <string>

namespace emulator {

/// Reads the calls to the service of a HAR 1.2 and skips all others. Throws JsonError.
[[nodiscard]] Recording readHar(const std::string& text);

} // namespace emulator
