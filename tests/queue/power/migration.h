#pragma once

#include "tests/queue/power/judgement.h"

namespace power {

/// A database whose schema is brought from version 1 to version 2 when it is opened, with rows that move.
[[nodiscard]] Scenario migration();

} // namespace power
