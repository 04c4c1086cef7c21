#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/answer.h"
#include "emulator/protocol/call.h"
#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <optional>

namespace emulator {

/// The answer that the fault turns the `honest` reply to a call into. Nothing if the fault makes no
/// difference: the key to leave out is missing, or the call was refused and has no document to change.
[[nodiscard]] std::optional<Answer> misbehave(
    const Fault& fault, const Call& call, const Reply& honest, TimePoint now);

/// The error object of a document with this failure, with its default code or another one. It has no
/// `error_id`.
[[nodiscard]] Json errorOf(Failure failure);
[[nodiscard]] Json errorOf(Failure failure, ErrorCode code);

} // namespace emulator
