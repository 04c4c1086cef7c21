#pragma once

#include "emulator/values/json.h"

#include <string>

/// The body of a sell call that the service takes: one line, 150.50 roubles.
[[nodiscard]] emulator::Json goodReceipt(const std::string& externalId = "id-1");
