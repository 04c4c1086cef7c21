#pragma once

#include <string_view>

namespace emulator {

/// Whether `text` is valid UTF-8 without control characters below U+0080.
[[nodiscard]] bool isPlainText(std::string_view text);

} // namespace emulator
