#pragma once

#include "emulator/http/answer.h"
#include "emulator/store/store.h"

namespace emulator {

[[nodiscard]] Json toJson(const Exchange& exchange);

/// All calls that are kept, or those of one group and the token calls, as lines for a replay. The store is
/// borrowed until the answer has been sent.
[[nodiscard]] Answer recordingOf(const Request& request, Store& store);

} // namespace emulator
