#pragma once

#include "hostcli/failure.h"

#include <QtGlobal>

#include <functional>

namespace frhost {

// What an interruption does, in the course of a run. Until the program knows what it is asked for, an
// interruption waits.

/// The program was interrupted: does what is decided for this moment. May not return.
void interrupt(int signal);

/// From now on, the signal has its default effect.
void leaveInterruptionsToTheSystem();

/// From now on, an interruption does nothing: the work is done, and its status counts.
void ignoreInterruptions();

/// While it lives, an interruption calls the action, in another thread. The action must not throw. Afterwards
/// interruptions are ignored.
class OnInterruption
{
public:
    explicit OnInterruption(const std::function<void()>& action);
    /// Waits for the action to return, if it was called.
    ~OnInterruption();
    Q_DISABLE_COPY_MOVE(OnInterruption)
};

/// Ends the program with this status, without unwinding: other threads may be blocked for a long time.
[[noreturn]] void endInterrupted(ExitCode status);

/// Says that the run was interrupted and ends it, for commands that register nothing.
[[noreturn]] void sayInterruptedAndEnd();

/// The same for commands that register receipts, as long as they have sent none.
[[noreturn]] void sayNothingSentAndEnd();

} // namespace frhost
