#include "frbase/basicfrdriver.h"

#include <unistd.h>

// === For drivers on this base: pauses and parameters ===

void BasicFrDriver::msleep(int ms) const
{
    if (ms > 0)
        usleep(static_cast<useconds_t>(ms) * 1000U);
}

bool BasicFrDriver::legacySetParam(
    unsigned short /*table*/, unsigned short /*row*/, unsigned short /*field*/, const QString& /*value*/)
{
    return false;
}
