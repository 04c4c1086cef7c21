#pragma once

#include "emulator/values/moscowtime.h"

#include <optional>
#include <string>
#include <string_view>

namespace emulator {

/// A random token of 128 characters of the base64url alphabet. It names its end, so that one that ran out
/// long ago is still told from one that was never issued, even by an emulator that has forgotten it.
[[nodiscard]] std::string newToken(TimePoint expiresAt);

/// When a token ends or ended; nothing if no emulator has issued it. Does not make it valid.
[[nodiscard]] std::optional<TimePoint> endOf(std::string_view token);

} // namespace emulator
