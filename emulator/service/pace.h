#pragma once

#include "emulator/values/moscowtime.h"

#include <deque>
#include <map>
#include <string>

namespace emulator {

/// Limits how often each group may ask for status.
class Pace
{
public:
    /// Counts a call; false if there have already been `perSecond` calls of the group in the last second.
    [[nodiscard]] bool allows(const std::string& group, int perSecond, TimePoint now);

private:
    std::map<std::string, std::deque<TimePoint>> calls;
};

} // namespace emulator
