#include "frbase/basicfrdriver.h"

#include "host/records/driveroptions.h"

namespace {

constexpr quint64 bits(hw::fr::Option option)
{
    return static_cast<quint64>(option);
}

} // namespace

// === Options ===

bool BasicFrDriver::checkOption(hw::fr::Option option) const
{
    return (options & bits(option)) == bits(option);
}

void BasicFrDriver::setOption(hw::fr::Option option, bool value)
{
    if (settings->getDriverOptions().value(option, value))
        options |= bits(option);
    else
        options &= ~bits(option);
}
