#pragma once

#include "emulator/service/fieldrule.h"

#include <cstdint>
#include <span>

namespace emulator {

inline constexpr std::int64_t mostItems = 100;

/// The fields of a register call of a receipt, in the order in which complaints name them.
[[nodiscard]] std::span<const FieldRule> receiptRules();
/// Those of a correction.
[[nodiscard]] std::span<const FieldRule> correctionRules();

} // namespace emulator
