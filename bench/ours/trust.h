#pragma once

#include "bench/support/endpoint.h"
#include "host/transport/transportoptions.h"

namespace bench {

/// Lets the transports that are created from now on trust the endpoint's certificate, and no other.
inline void trust(const Endpoint& endpoint)
{
    hostruntime::TransportOptions options;
    options.caFile = QString::fromStdString(endpoint.caFile);
    hostruntime::TransportOptions::setDefaults(options);
}

} // namespace bench
