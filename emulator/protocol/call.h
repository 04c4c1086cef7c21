#pragma once

#include "emulator/http/http.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/json.h"

#include <string>
#include <string_view>

namespace emulator {

/// The path prefix of every call to the service.
inline constexpr std::string_view basePath = "/possystem/v4/";

/// A request read as a call to the service. Fields that the request does not have are empty.
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
    /// Discarded if it is not JSON or is nested too deeply.
    Json body{};
};

/// Reads as much as it can and rejects nothing. The path may end in a slash if `mild`.
[[nodiscard]] Call readCall(const Request& request, bool mild);

} // namespace emulator
