#pragma once

#include "host/transport/restclient.h"

namespace till {

/// Makes drivers that are created while it lives use the given transport. Borrowed; must outlive this and
/// every such driver.
class InstalledTransport
{
public:
    explicit InstalledTransport(RestClient& transport) { MockFactory<RestClient>::mocked = &transport; }
    ~InstalledTransport() { MockFactory<RestClient>::mocked = nullptr; }
    Q_DISABLE_COPY_MOVE(InstalledTransport)
};

} // namespace till
