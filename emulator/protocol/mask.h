#pragma once

#include "emulator/http/http.h"
#include "emulator/protocol/call.h"

#include <string>

namespace emulator {

/// The request as readable text with `***` in place of tokens and passwords. A body that may contain a
/// password and cannot be parsed is replaced as a whole.
[[nodiscard]] std::string maskedRequest(const Request& request, const Call& call);

/// The bytes of an answer with `***` in place of the token it issues, or of the whole body of an answer to
/// `getToken` that is not JSON, as it may contain a token anywhere.
[[nodiscard]] std::string maskedAnswer(const std::string& bytes, const Call& call);

} // namespace emulator
