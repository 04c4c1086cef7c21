#pragma once

#include "emulator/values/endpoint.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <optional>
#include <string>

namespace emulator {

/// A request and its answer as they were on the wire, with secrets masked.
struct Exchange
{
    std::int64_t sequence = 0;
    TimePoint at{};
    Endpoint endpoint = Endpoint::Unknown;
    std::string groupCode{};
    std::string externalId{};
    /// The document that the call created, repeated or asked about; empty if there is none.
    std::string uuid{};
    std::string login{};
    std::string request{};
    /// The bytes that were sent; empty if none were.
    std::string answer{};
    /// HTTP status of the answer, 0 if none was sent.
    int status = 0;
    /// Error code of the answer, if it has one.
    std::optional<int> code{};
    /// Description of the fault that hit the call, or of what went wrong with a callback; empty if nothing
    /// did.
    std::string fault{};
};

/// The newest `limit` exchanges with a sequence above `after` and, unless `before` is 0, below `before`.
struct ExchangeRange
{
    std::int64_t after = 0;
    std::int64_t before = 0;
    int limit = 100;
};

} // namespace emulator
