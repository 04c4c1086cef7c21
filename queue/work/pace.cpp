#include "queue/work/pace.h"

#include <algorithm>
#include <thread>

namespace queue {

namespace {

using namespace std::chrono_literals;

// A register of the group may be asked about once a second; groups have one register to some dozens.
constexpr std::chrono::microseconds afterFirstRefusal = 100ms;
constexpr std::chrono::microseconds longest = 2s;

} // namespace

Pace::Clock::time_point Pace::next(Clock::time_point now)
{
    const std::scoped_lock lock(guard);
    const Clock::time_point turn = std::max(now, free);
    free = turn + between;
    return turn;
}

void Pace::wait()
{
    std::this_thread::sleep_until(next(Clock::now()));
}

void Pace::note(bool isRefused)
{
    const std::scoped_lock lock(guard);
    if (isRefused)
        between = std::clamp(between * 2, afterFirstRefusal, longest);
    else
        between -= between / 32;
}

} // namespace queue
