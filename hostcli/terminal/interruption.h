#pragma once

namespace frhost {

/// Ends the program with the status for an unknown outcome, without unwinding: other threads may be blocked
/// for a long time.
[[noreturn]] void endInterrupted();

/// Says that the run was interrupted and ends it, for commands that register nothing.
[[noreturn]] void sayInterruptedAndEnd();

} // namespace frhost
