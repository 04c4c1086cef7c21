#pragma once

#include <cstdint>

namespace bench {

/// Locks taken since the program began. Linking it replaces pthread_mutex_lock and the futex road that Qt's
/// own mutexes take when they must wait.
struct LockCount
{
    std::int64_t taken = 0;
    /// Of these, how many had to wait for another thread; Qt's mutexes count here alone.
    std::int64_t waited = 0;
};

[[nodiscard]] LockCount lockCount();

} // namespace bench
