#include "frbase/basicfrdriver.h"

#include <QString>

#include <algorithm>
#include <limits>

#include <unistd.h>

// === For drivers on this base: pauses and parameters ===

void BasicFrDriver::msleep(int ms) const
{
    // The microseconds of a longer pause do not fit into the argument of usleep().
    constexpr int longest = std::numeric_limits<useconds_t>::max() / 1000;
    bool isInterrupted = false;
    for (int left = ms; left > 0 && !isInterrupted; left -= longest)
        isInterrupted = usleep(static_cast<useconds_t>(std::min(left, longest)) * 1000U) != 0;
}

bool BasicFrDriver::legacySetParam(
    unsigned short /*table*/, unsigned short /*row*/, unsigned short /*field*/, const QString& /*value*/)
{
    return false;
}
