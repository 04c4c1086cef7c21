#pragma once

#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <string>

namespace emulator {

/// Text of the QR code on a receipt. `settlement` is 1 for a sale, 2 for its refund, 3 for a purchase, 4 for
/// its refund.
[[nodiscard]] std::string qrText(const Json& payload, TimePoint time, int settlement);

/// The text as a QR code in SVG, with the quiet zone that readers need.
[[nodiscard]] std::string qrImage(const std::string& text);

} // namespace emulator
