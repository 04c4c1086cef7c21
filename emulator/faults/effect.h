#pragma once

#include "emulator/protocol/errors.h"
#include "emulator/values/endpoint.h"

#include <span>
#include <string_view>

namespace emulator {

/// Whether the call takes effect before it goes wrong.
enum class Phase
{
    Before, ///< nothing is registered, no token is issued
    After   ///< it takes effect; only the answer is lost or changed
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

/// The setting of an effect. `Type` comes with an optional code.
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

/// What makes a document fail.
enum class Failure
{
    Driver,
    Agent,
    Timeout,
    System,
    Unknown
};

struct EffectInfo
{
    Effect effect;
    std::string_view name;
    /// The phase if a fault names none.
    Phase phase;
    /// The endpoints that it can be used with.
    EndpointSet endpoints;
    Parameter parameter;
    std::string_view meaning;
    /// Value of a numeric parameter if a fault gives none.
    int defaultValue = 0;
};

/// Type, code and text of the document's error.
struct FailureInfo
{
    Failure failure;
    std::string_view name;
    /// The code if a fault gives none.
    ErrorCode code;
    std::string_view text;
};

/// Names in the JSON of a fault.
[[nodiscard]] std::string_view nameOf(Phase phase);
[[nodiscard]] std::string_view nameOf(Parameter parameter);

[[nodiscard]] std::span<const EffectInfo> effects();
[[nodiscard]] const EffectInfo& infoOf(Effect effect);

[[nodiscard]] std::span<const FailureInfo> failures();
[[nodiscard]] const FailureInfo& infoOf(Failure failure);

} // namespace emulator
