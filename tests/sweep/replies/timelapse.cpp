// A pause of the driver or of the till takes no time in a program with this source: a property is tried many
// times. The program's definitions take precedence over the C library's, also for the plugin that it loads.

#include <ctime>
#include <unistd.h>

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int usleep(useconds_t)
{
    return 0;
}

EXPORTED int nanosleep(const timespec*, timespec*)
{
    return 0;
}

EXPORTED int clock_nanosleep(clockid_t, int, const timespec*, timespec*)
{
    return 0;
}
