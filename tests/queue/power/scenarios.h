#pragma once

#include "tests/queue/power/judgement.h"

namespace power {

/// Everything that is done to a queue in a file, from its creation on, by several connections that are closed
/// and opened again. Others look into it all the time: what they see is promised, too. `setting` is a
/// statement for each connection.
[[nodiscard]] Scenario queueDay(const char* setting = "PRAGMA synchronous");

/// The journal of sales, written by one run after another.
[[nodiscard]] Scenario journalDay();

/// A database whose schema is brought from version 1 to version 2 when it is opened, with rows that move.
[[nodiscard]] Scenario migration();

} // namespace power
