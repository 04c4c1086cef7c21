#include "emulator/service/pace.h"

namespace emulator {

bool Pace::allows(const std::string& group, int perSecond, TimePoint now)
{
    std::deque<TimePoint>& times = calls[group];
    while (!times.empty() && times.front() + std::chrono::seconds(1) <= now)
        times.pop_front();
    if (times.size() >= static_cast<std::size_t>(perSecond))
        return false;
    times.push_back(now);
    return true;
}

} // namespace emulator
