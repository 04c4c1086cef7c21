#pragma once

#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <string>

namespace emulator {

/// Text of the QR code on the receipt; `settlement` is 1 for a sale, 2 its refund, 3 a purchase, 4 its
/// refund.
[[nodiscard]] std::string qrText(const Json& payload, TimePoint time, int settlement);

/// The QR code of a text as an SVG image, with the quiet zone that readers need.
[[nodiscard]] std::string qrImage(const std::string& text);

} // namespace emulator
