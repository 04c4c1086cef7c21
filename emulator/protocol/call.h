#pragma once

#include "emulator/http/http.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/json.h"

#include <string>
#include <string_view>

namespace emulator {

/// The path that every call of the service begins with.
inline constexpr std::string_view basePath = "/possystem/v4/";

/// A request read as a call of the service. What the request does not hold is empty.
struct Call
{
    Endpoint endpoint = Endpoint::Unknown;
    std::string group{};
    std::string operation{};
    std::string uuid{};
    std::string token{};
    std::string login{};
    std::string password{};
    std::string externalId{};
    /// The body, discarded when it is no JSON or nested too deep.
    Json body{};
};

/// Reads without judging: a call that makes no sense comes out as well as it can.
[[nodiscard]] Call readCall(const Request& request);

} // namespace emulator
