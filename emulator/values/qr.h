#pragma once

#include <string>

namespace emulator {

/// The QR code of a text as an SVG image, with the quiet zone that readers need.
[[nodiscard]] std::string qrImage(const std::string& text);

} // namespace emulator
