#pragma once

#include "emulator/values/json.h"

#include <string>

namespace emulator {

/// The fields that the service's text of code 32 names, as in `NumberTooSmall: #/receipt.total`: objects with
/// `field` and, in Russian, `rule`.
[[nodiscard]] Json fieldsNamedIn(const std::string& text);

} // namespace emulator
