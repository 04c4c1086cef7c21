#pragma once

#include "emulator/rules/fieldrule.h"

#include <span>

namespace emulator {

/// Rules of every edition for the fields of a register call, in the order in which violations are reported.
[[nodiscard]] std::span<const FieldRule> receiptRules();
/// Likewise for the fields of a correction.
[[nodiscard]] std::span<const FieldRule> correctionRules();

} // namespace emulator
