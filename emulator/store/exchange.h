#pragma once

#include "emulator/values/endpoint.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <optional>
#include <string>

namespace emulator {

/// One request and its answer as they were on the wire, secrets masked.
struct Exchange
{
    std::int64_t sequence = 0;
    TimePoint at{};
    Endpoint endpoint = Endpoint::Unknown;
    std::string groupCode{};
    std::string externalId{};
    /// The document that the call made, met again or asked for; empty when there is none.
    std::string uuid{};
    std::string login{};
    std::string request{};
    /// The bytes that went out, empty when none did.
    std::string answer{};
    /// HTTP status of the answer, 0 when none went out.
    int status = 0;
    /// Error code of the answer, if it speaks of an error.
    std::optional<int> code{};
    /// Description of the fault that hit, empty when none did.
    std::string fault{};
};

/// The newest of the exchanges behind one sequence and before another; 0 of `before` is no end.
struct ExchangeRange
{
    std::int64_t after = 0;
    std::int64_t before = 0;
    int limit = 100;
};

} // namespace emulator
