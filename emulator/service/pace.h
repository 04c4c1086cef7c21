#pragma once

#include "emulator/values/moscowtime.h"

#include <deque>
#include <map>
#include <string>

namespace emulator {

/// Counts how often each group asks for status.
class Pace
{
public:
    /// Notes a question; false when the group has already asked `perSecond` times within the last second.
    [[nodiscard]] bool allows(const std::string& group, int perSecond, TimePoint now);

private:
    std::map<std::string, std::deque<TimePoint>> asked;
};

} // namespace emulator
