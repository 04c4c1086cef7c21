#pragma once

#include "emulator/http/http.h"
#include "emulator/store/document.h"
#include "emulator/values/moscowtime.h"

namespace emulator {

/// Status answers of a document at the moment `now`: not processed yet, or as it turned out.
[[nodiscard]] Reply waitingReply(const Document& document, TimePoint now);
[[nodiscard]] Reply finishedReply(const Document& document, TimePoint now);

} // namespace emulator
