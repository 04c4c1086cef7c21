#pragma once

#include "emulator/answer.h"
#include "emulator/fault.h"
#include "emulator/moscowtime.h"

namespace emulator {

/// What becomes of the honest reply to a call under the fault.
[[nodiscard]] Answer misbehave(const Fault& fault, const Reply& honest, TimePoint now);

/// The error object of a document that the fault lets fail.
[[nodiscard]] Json failure(const Fault& fault);

} // namespace emulator
