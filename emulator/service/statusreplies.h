#pragma once

#include "emulator/http/http.h"
#include "emulator/store/document.h"
#include "emulator/values/moscowtime.h"

namespace emulator {

/// Status replies for a document, as of `now`: not processed yet, or with its result.
[[nodiscard]] Reply waitingReply(const Document& document, TimePoint now);
[[nodiscard]] Reply finishedReply(const Document& document, TimePoint now);

} // namespace emulator
