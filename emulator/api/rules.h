#pragma once

#include "emulator/service/service.h"

namespace emulator {

/// What bodies are checked for: the revision, its rules for receipts and corrections, those for documents
/// that fail later, and the permitted names.
[[nodiscard]] Json rulesOf(const Service& service);

} // namespace emulator
