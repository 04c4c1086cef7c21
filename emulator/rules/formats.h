#pragma once

#include <cstdint>
#include <string>

namespace emulator {

/// Characters of a text in UTF-8.
[[nodiscard]] std::int64_t characters(const std::string& text);

[[nodiscard]] bool isInn(const std::string& text);

/// Up to 17 digits, or `+` and up to 18.
[[nodiscard]] bool isPhone(const std::string& text);

/// Up to 17 characters, none of them a space or a backslash; or `+` and 1 to 18 such characters.
[[nodiscard]] bool isAgentPhone(const std::string& text);

/// Up to `most` bytes in hexadecimal, separated by single spaces; at least one.
[[nodiscard]] bool isHexBytes(const std::string& text, std::int64_t most);

/// A marking code as it is scanned: the text of a GS1 DataMatrix of up to 150 characters, which begins with
/// the GTIN and the serial, or the 29 characters from a packet of tobacco.
[[nodiscard]] bool isScannedCode(const std::string& text);

} // namespace emulator
