#pragma once

#include "emulator/store/register.h"
#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// Registers a receipt at `time` and returns the payload of its status answer. Opens a shift if none is open,
/// and a new one after 24 hours, which the law requires, or after `receiptsPerShift` receipts (0: no limit).
/// Each shift report takes a document number of the storage. The time of a receipt has no seconds.
[[nodiscard]] Json registerReceipt(Register& where, TimePoint time, std::int64_t totalKopecks,
    std::int64_t receiptsPerShift, const std::string& fnsSite);

} // namespace emulator
