#pragma once

#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// One request and its answer as they were on the wire, secrets masked.
struct Exchange
{
    std::int64_t sequence = 0;
    TimePoint at{};
    /// `token`, `sell`, `report` or, for a call that is none of them, `unknown`.
    std::string endpoint{};
    std::string groupCode{};
    std::string externalId{};
    /// The document that the call made, met again or asked for; empty when there is none.
    std::string uuid{};
    std::string login{};
    std::string request{};
    /// The bytes that went out, empty when none did.
    std::string answer{};
    /// What the answer says: HTTP status, 0 when none went out, and error code, -1 for no error.
    int status = 0;
    int code = -1;
    /// Description of the fault that hit, empty when none did.
    std::string fault{};
};

} // namespace emulator
