#pragma once

#include "emulator/faults/effect.h"
#include "emulator/protocol/errors.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/json.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace emulator {

/// Deliberate misbehaviour: which calls it hits and what happens to them.
struct Fault
{
    int id = 0;
    std::string name{};
    Endpoint endpoint = Endpoint::Sell;
    /// Empty values match every call; `externalId` may contain `*` and `?`.
    std::string login{};
    std::string group{};
    std::string externalId{};
    /// Of the matching calls, the first `after` are spared; then every `every`th is hit, until `next` have
    /// been. If `next` is 0, there is no limit.
    std::int64_t after = 0;
    std::int64_t every = 1;
    std::int64_t next = 0;
    Phase phase = Phase::Before;
    Effect effect = Effect::Error;
    /// Parameters; only those of the effect are used.
    ErrorCode code = ErrorCode::Unknown;
    int status = 0;
    int bytes = 0;
    std::chrono::milliseconds time{0};
    std::string key{};
    Failure failure = Failure::Driver;

    std::int64_t matched = 0;
    std::int64_t hits = 0;

    [[nodiscard]] bool spent() const { return next > 0 && hits >= next; }
};

/// Throws JsonError for unknown keys and values out of range.
[[nodiscard]] Fault readFault(const Json& json);
[[nodiscard]] Json toJson(const Fault& fault);

} // namespace emulator
