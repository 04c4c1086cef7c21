#pragma once

#include "emulator/http/answer.h"

#include <string>
#include <vector>

namespace emulator {

/// A call to the service with its answer. What the client sent besides is not kept: it holds secrets.
struct RecordedCall
{
    /// As `keyOf` says.
    std::string key{};
    Answer answer{};
};

using Recording = std::vector<RecordedCall>;

/// Identifies calls with the same answers: "getToken", "GROUP/OPERATION" or "GROUP/report/UUID"; empty for a
/// request that does not go to the service.
[[nodiscard]] std::string keyOf(const Request& request);

/// A recorded answer with this status, or none at all if the status is 0.
[[nodiscard]] Answer recordedAnswer(int status, std::string contentType, std::string body);

/// Reads a HAR, or lines of JSON with `request` and `answer`. Throws JsonError with the place, what is
/// expected there and what to do, but nothing of the content, which may be secret.
[[nodiscard]] Recording readRecording(const std::string& file);

} // namespace emulator
