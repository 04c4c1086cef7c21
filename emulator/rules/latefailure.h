#pragma once

#include "emulator/rules/revision.h"
#include "emulator/values/json.h"

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// Why a document that the register call accepted fails afterwards.
struct LateFailure
{
    int code;
    std::string_view type;
    std::string_view text;
};

/// The failure that awaits a receipt or correction without violations, if any. `inn` is the group's taxpayer
/// number; if empty, any will do.
[[nodiscard]] std::optional<LateFailure> lateFailureOf(
    const Json& object, const std::string& inn, const Edition& edition);

} // namespace emulator
