#pragma once

#include "emulator/http/http.h"

#include <string>
#include <vector>

namespace emulator {

/// Why a request is not for us, or an empty text. A page from elsewhere in the same browser must not reach
/// the emulator: the Host must be a name of this machine or one of `hosts`, and an Origin, where one is
/// given, must be the Host itself. What a browser asks for on behalf of another site is foreign too, unless
/// it is a link to a file of the page (`isPage`).
[[nodiscard]] std::string foreignness(
    const Request& request, const std::vector<std::string>& hosts, bool isPage);

} // namespace emulator
