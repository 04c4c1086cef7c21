#pragma once

#include "emulator/protocol/call.h"
#include "emulator/values/json.h"

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace emulator {

/// Whether the call did its work before it went wrong.
enum class Phase
{
    Before, ///< nothing was registered, no token was given
    After   ///< it was, and only the answer is lost or changed
};

enum class Effect
{
    Error,
    Html,
    Empty,
    Truncated,
    NotJson,
    WrongLength,
    Drip,
    Delay,
    Silent,
    Close,
    ResetBefore,
    ResetDuring,
    ResetAfter,
    OtherDocument,
    OldToken,
    WithoutKey,
    Fail,
    Never
};

/// One kind of misbehaviour and what it may be told.
struct EffectInfo
{
    Effect effect;
    std::string_view name;
    /// The phase when a fault names none.
    Phase phase;
    /// Letters of the endpoints that it makes sense for: t(oken), s(ell), r(eport).
    std::string_view endpoints;
    /// The one parameter that it takes beside `code` of `fail`, empty for none.
    std::string_view parameter;
    std::string_view meaning;
    /// The parameter when a fault names none, as far as it is a number.
    int usual = 0;
};

[[nodiscard]] std::span<const EffectInfo> effects();
[[nodiscard]] std::string_view nameOf(Endpoint endpoint);

/// How a document can fail: the type and usual code of its error.
struct FailType
{
    std::string_view name;
    int code;
    std::string_view text;
};

[[nodiscard]] std::span<const FailType> failTypes();

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
    int code = 0;
    int status = 0;
    int bytes = 0;
    std::chrono::milliseconds time{0};
    std::string key{};
    std::string type{};

    std::int64_t matched = 0;
    std::int64_t hits = 0;

    [[nodiscard]] bool spent() const { return next > 0 && hits >= next; }
};

/// Reads a fault; unknown keys and values out of range throw JsonError.
[[nodiscard]] Fault readFault(const Json& json);
[[nodiscard]] Json toJson(const Fault& fault);

} // namespace emulator
