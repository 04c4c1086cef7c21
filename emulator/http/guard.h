#pragma once

#include "emulator/http/http.h"

#include <string>
#include <vector>

namespace emulator {

/// Why the request must be rejected; empty if it need not be. A web page of another site open in the same
/// browser must not reach the emulator. So the Host must be a name of this machine or one of `hosts`, alone
/// or with a port, the Origin, if present, must match the Host, and requests that a browser makes for another
/// site are rejected, except for a link to a file of the emulator's own page (`isPage`).
[[nodiscard]] std::string rejectionReason(
    const Request& request, const std::vector<std::string>& hosts, bool isPage);

} // namespace emulator
