#pragma once

#include "emulator/http/http.h"
#include "emulator/values/json.h"

namespace emulator {

/// A reply whose body is `body` in one line.
[[nodiscard]] Reply jsonReply(int status, const Json& body);

} // namespace emulator
