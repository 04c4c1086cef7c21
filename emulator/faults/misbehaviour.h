#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/answer.h"
#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <optional>

namespace emulator {

/// What becomes of the honest reply to a call under the fault; nothing when the fault makes no difference to
/// it, as when a key that is to be left out is not there or a refused call has no document to be changed.
[[nodiscard]] std::optional<Answer> misbehave(const Fault& fault, const Reply& honest, TimePoint now);

/// The error object of a document that fails in this way, with the usual code or one of its own.
[[nodiscard]] Json errorOf(Failure failure);
[[nodiscard]] Json errorOf(Failure failure, ErrorCode code);

} // namespace emulator
