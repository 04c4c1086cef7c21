#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/answer.h"
#include "emulator/protocol/call.h"
#include "emulator/store/exchange.h"

namespace emulator {

/// The exchange that is recorded of a call, without its time. Secrets are masked, long texts cut. `fault` is
/// null for a call that none has hit.
[[nodiscard]] Exchange recordOf(
    const Call& call, const Request& request, const Answer& answer, const Fault* fault);

} // namespace emulator
