#pragma once

#include "emulator/http/http.h"
#include "emulator/protocol/call.h"

#include <string>

namespace emulator {

/// The request as text for people, its tokens and passwords replaced by `***`. A body that may hold a
/// password and cannot be read is replaced whole.
[[nodiscard]] std::string maskedRequest(const Request& request, const Call& call);

/// The bytes of an answer with the token that it gives replaced likewise.
[[nodiscard]] std::string maskedAnswer(const std::string& bytes, const Call& call);

} // namespace emulator
