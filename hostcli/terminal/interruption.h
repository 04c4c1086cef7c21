#pragma once

#include "hostcli/failure.h"

namespace frhost {

/// Ends the program with this status, without unwinding: other threads may be blocked for a long time.
[[noreturn]] void endInterrupted(ExitCode status);

/// Says that the run was interrupted and ends it, for commands that register nothing.
[[noreturn]] void sayInterruptedAndEnd();

} // namespace frhost
