#pragma once

#include "emulator/call.h"
#include "emulator/http.h"

#include <string>

namespace emulator {

/// The request as text for people, its token and password replaced by `***`.
[[nodiscard]] std::string maskedRequest(const Request& request, const Call& call);

/// The bytes of an answer with the token that it gives replaced likewise.
[[nodiscard]] std::string maskedAnswer(const std::string& bytes, const Reply& honest, const Call& call);

} // namespace emulator
