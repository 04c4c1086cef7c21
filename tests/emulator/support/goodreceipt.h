#pragma once

#include "emulator/values/json.h"

#include <string>

/// The body of a valid sell call: one item, 150.50 roubles.
[[nodiscard]] emulator::Json goodReceipt(const std::string& externalId = "id-1");
