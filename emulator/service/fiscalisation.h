#pragma once

#include "emulator/store/register.h"
#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>

namespace emulator {

/// Registers a receipt at `time` and gives the payload of its status answer. Opens a shift when there is none
/// and, as the law has it, a new one after 24 hours or after `receiptsPerShift` receipts (0: no such limit);
/// each shift report is a document of the storage as well.
[[nodiscard]] Json registerReceipt(
    Register& where, TimePoint time, std::int64_t totalKopecks, std::int64_t receiptsPerShift);

} // namespace emulator
