#pragma once

#include "emulator/replay/recording.h"

#include <string>

namespace emulator {

/// Whether the first line that is not empty is a whole JSON object with a `request`.
[[nodiscard]] bool areJsonLines(const std::string& text);

/// Reads lines with `request` and `answer` as they were on the wire, such as those of /_emulator/recording,
/// and skips what did not go to the service. Throws JsonError.
[[nodiscard]] Recording readJsonLines(const std::string& text);

} // namespace emulator
