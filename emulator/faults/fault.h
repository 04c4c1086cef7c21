#pragma once

#include "emulator/faults/effect.h"
#include "emulator/protocol/errors.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/json.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace emulator {

/// Misbehaviour on purpose: which calls it hits, and what then happens.
struct Fault
{
    int id = 0;
    std::string name{};
    Endpoint endpoint = Endpoint::Sell;
    /// Empty ones match every call; `externalId` may hold `*` and `?`.
    std::string login{};
    std::string group{};
    std::string externalId{};
    /// Of the calls that match, the first `after` go free, then every `every`th is hit, until `next` were; 0
    /// of `next` is no end.
    std::int64_t after = 0;
    std::int64_t every = 1;
    std::int64_t next = 0;
    Phase phase = Phase::Before;
    Effect effect = Effect::Error;
    /// What the effect is told, as far as it takes it.
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

/// Reads a fault; unknown keys and values out of range throw JsonError.
[[nodiscard]] Fault readFault(const Json& json);
[[nodiscard]] Json toJson(const Fault& fault);

} // namespace emulator
