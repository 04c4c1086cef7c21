#pragma once

#include "emulator/rules/fieldrule.h"

#include <cstdint>
#include <span>

namespace emulator {

inline constexpr std::int64_t mostItems = 100;

/// Rules for the body of a register call, in the order in which violations are reported.
[[nodiscard]] std::span<const FieldRule> receiptRules();
/// Rules for the body of a correction.
[[nodiscard]] std::span<const FieldRule> correctionRules();

} // namespace emulator
