#pragma once

#include "emulator/http/http.h"
#include "emulator/protocol/errors.h"
#include "emulator/values/endpoint.h"
#include "emulator/values/moscowtime.h"

#include <string>

namespace emulator {

/// The service's replies that need no stored document, as of `now`.
[[nodiscard]] Reply tokenReply(const std::string& token, TimePoint now);
[[nodiscard]] Reply acceptedReply(const std::string& uuid, TimePoint now);
/// With an error that does not mean that the document failed. Without a uuid if there is none.
[[nodiscard]] Reply waitingReply(
    const std::string& uuid, const ServiceError& error, TimePoint now, const std::string& text = {});
[[nodiscard]] Reply errorReply(
    Endpoint endpoint, const ServiceError& error, TimePoint now, const std::string& text = {});

} // namespace emulator
