#pragma once

#include "emulator/values/json.h"

#include <string>

/// The body of a valid sell call: one item, 150.50 roubles.
[[nodiscard]] emulator::Json goodReceipt(const std::string& externalId = "id-1");

/// The body of a valid sell_correction call.
[[nodiscard]] emulator::Json goodCorrection(const std::string& externalId = "id-1");

/// `body` with `value` at `pointer`; the value "absent" removes what is there.
[[nodiscard]] emulator::Json changed(
    const emulator::Json& body, const std::string& pointer, const emulator::Json& value);
