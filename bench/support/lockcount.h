#pragma once

#include <cstdint>

namespace bench {

/// Waits for locks since the program began. Linking it replaces pthread_mutex_lock, the two locks of a
/// pthread_rwlock_t, and the futex call of Qt's own mutexes, which they make only when they must wait or
/// wake.
struct LockCount
{
    /// How often a lock of POSIX threads, which std::mutex and std::shared_mutex are, was not free.
    std::int64_t waited = 0;
    /// Futex calls of Qt's mutexes.
    std::int64_t futexCallsOfQt = 0;
};

[[nodiscard]] LockCount lockCount();

} // namespace bench
