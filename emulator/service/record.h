#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/answer.h"
#include "emulator/protocol/call.h"
#include "emulator/store/exchange.h"
#include "emulator/store/refusals.h"

#include <string>

namespace emulator {

/// What to record of a call, except for its time and the document of a sell call. Secrets are masked and long
/// texts truncated. `fault` is null if none hit the call.
[[nodiscard]] Exchange recordOf(
    const Call& call, const Request& request, const Answer& answer, const Fault* fault);

/// A recorded register call as a refusal. `fields` are objects with `field` and `rule`.
[[nodiscard]] Refusal refusalOf(const Call& call, const Exchange& exchange, Json fields);

/// At most 64 KiB of a text, and how much there was beyond.
[[nodiscard]] std::string truncated(std::string text);

} // namespace emulator
