#pragma once

#include "emulator/rules/relations.h"
#include "emulator/rules/revision.h"
#include "emulator/values/json.h"

#include <optional>
#include <string_view>
#include <vector>

namespace emulator {

/// Why a document that the register call accepted fails afterwards.
struct LateFailure
{
    int code;
    std::string_view type;
    std::string_view text;
    /// The fields that are to blame.
    std::vector<Violation> fields{};
};

/// The failure that awaits a receipt or correction without violations, if any.
[[nodiscard]] std::optional<LateFailure> lateFailureOf(const Checked& checked, const Edition& edition);

/// The rules for such failures that are in force: objects with `field`, `rule`, `source`, `code` and `type`.
[[nodiscard]] Json lateRules(const Edition& edition);

} // namespace emulator
