#include "host/transport/transportoptions.h"

#include <mutex>

namespace hostruntime {

namespace {

struct Shared
{
    std::mutex guard;
    TransportOptions options;
};

Shared& shared()
{
    static Shared instance;
    return instance;
}

} // namespace

TransportOptions TransportOptions::defaults()
{
    const std::lock_guard lock(shared().guard);
    return shared().options;
}

void TransportOptions::setDefaults(const TransportOptions& options)
{
    const std::lock_guard lock(shared().guard);
    shared().options = options;
}

} // namespace hostruntime
