#pragma once

#include <sched.h>
#include <unistd.h>

namespace bench {

/// Keeps the calling thread, and the processes that it starts, on one core, modulo how many there are.
///
/// Whether the two ends of a conversation share a core changes its time threefold, so the scheduler is not
/// left to choose: clients run on core 0 and the service on core 1, apart as in a shop.
inline void stayOnCore(int core)
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(static_cast<unsigned>(core) % static_cast<unsigned>(sysconf(_SC_NPROCESSORS_ONLN)), &cores);
    sched_setaffinity(0, sizeof cores, &cores);
}

} // namespace bench
