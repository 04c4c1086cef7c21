#include "bench/support/lockcount.h"

#include <atomic>
#include <cstdarg>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<std::int64_t> waited = 0;
std::atomic<std::int64_t> futexCallsOfQt = 0;

template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// Takes a lock, and counts a wait when it was not free.
template <typename Lock>
int take(Lock* lock, int (*tryLock)(Lock*), int (*waitFor)(Lock*))
{
    if (tryLock(lock) == 0)
        return 0;
    waited.fetch_add(1, std::memory_order_relaxed);
    return waitFor(lock);
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) int pthread_mutex_lock(pthread_mutex_t* mutex)
{
    static auto* const real = next<int(pthread_mutex_t*)>("pthread_mutex_lock");
    return take(mutex, &pthread_mutex_trylock, real);
}

__attribute__((visibility("default"))) int pthread_rwlock_rdlock(pthread_rwlock_t* lock)
{
    static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    return take(lock, &pthread_rwlock_tryrdlock, real);
}

__attribute__((visibility("default"))) int pthread_rwlock_wrlock(pthread_rwlock_t* lock)
{
    static auto* const real = next<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    return take(lock, &pthread_rwlock_trywrlock, real);
}

__attribute__((visibility("default"))) long syscall(long number, ...) noexcept
{
    if (number == SYS_futex)
        futexCallsOfQt.fetch_add(1, std::memory_order_relaxed);
    std::va_list list;
    va_start(list, number);
    long arguments[6];
    for (long& argument : arguments)
        argument = va_arg(list, long);
    va_end(list);
    static auto* const real = next<long(long, ...)>("syscall");
    return real(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4], arguments[5]);
}
}

namespace bench {

LockCount lockCount()
{
    return {waited, futexCallsOfQt};
}

} // namespace bench
