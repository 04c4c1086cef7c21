#pragma once

#include <string_view>

namespace emulator {

/// Whether `text` matches `pattern`, where `*` stands for any characters and `?` for any single one. Both are
/// UTF-8.
[[nodiscard]] bool matches(std::string_view text, std::string_view pattern);

} // namespace emulator
