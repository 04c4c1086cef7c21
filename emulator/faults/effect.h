#pragma once

#include "emulator/protocol/errors.h"
#include "emulator/values/endpoint.h"

#include <span>
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

/// The one thing that an effect can be told. `Type`, of a failure, comes with a code.
enum class Parameter
{
    None,
    Code,
    Status,
    Bytes,
    Milliseconds,
    Key,
    Type
};

/// Who or what makes a document fail.
enum class Failure
{
    Driver,
    Agent,
    Timeout,
    System,
    Unknown
};

/// An effect and what it may be told.
struct EffectInfo
{
    Effect effect;
    std::string_view name;
    /// The phase when a fault names none.
    Phase phase;
    /// The endpoints that it makes sense for.
    EndpointSet endpoints;
    Parameter parameter;
    std::string_view meaning;
    /// The parameter when a fault names none, as far as it is a number.
    int usual = 0;
};

/// The type of a failure, its usual code and its text as the error of the document has them.
struct FailureInfo
{
    Failure failure;
    std::string_view name;
    ErrorCode code;
    std::string_view text;
};

/// The names that faults are written with.
[[nodiscard]] std::string_view nameOf(Phase phase);
[[nodiscard]] std::string_view nameOf(Parameter parameter);

[[nodiscard]] std::span<const EffectInfo> effects();
[[nodiscard]] const EffectInfo& infoOf(Effect effect);

[[nodiscard]] std::span<const FailureInfo> failures();
[[nodiscard]] const FailureInfo& infoOf(Failure failure);

} // namespace emulator
