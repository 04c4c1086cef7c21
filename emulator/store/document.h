#pragma once

#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// What becomes of a document once its time has come.
enum class Outcome
{
    Done = 0,
    Fail = 1,
    Never = 2
};

/// A document that the service took.
struct Document
{
    std::int64_t sequence = 0;
    std::string uuid{};
    std::string groupCode{};
    std::string externalId{};
    std::string operation{};
    std::string login{};
    TimePoint receivedAt{};
    /// The body of the call written anew as UTF-8 in one line, so that a text is found however the client
    /// wrote it.
    std::string body{};
    std::int64_t totalKopecks = 0;
    std::string callbackUrl{};
    std::string deviceCode{};
    /// Until then a status answer says "not processed yet".
    TimePoint readyAt{};
    /// As long as it is above zero, so does this many more status answers.
    int waitsLeft = 0;
    Outcome outcome = Outcome::Done;
    /// Payload of the status answer of a document that is done, else null.
    Json payload{};
    /// Error object of one that failed, else null.
    Json error{};
};

/// What a list of documents is narrowed down to; empty fields leave it as it is.
struct DocumentFilter
{
    std::string group{};
    /// May hold `*` and `?`.
    std::string externalId{};
    std::string operation{};
    /// Occurs in the uuid, the external id or the body.
    std::string text{};
    /// Only documents before this sequence; 0 begins with the newest.
    std::int64_t before = 0;
    int limit = 100;
};

} // namespace emulator
