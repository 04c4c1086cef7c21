#pragma once

#include "emulator/http/http.h"
#include "emulator/values/json.h"

namespace emulator {

[[nodiscard]] Reply jsonReply(int status, const Json& body);

} // namespace emulator
