#pragma once

#include "emulator/values/json.h"
#include "emulator/values/moscowtime.h"

#include <cstdint>
#include <string>

namespace emulator {

/// What becomes of a document; the numbers are stored.
enum class Outcome
{
    Done = 0,
    Fail = 1,
    Never = 2 ///< it stays unprocessed
};

/// A document that the service accepted.
struct Document
{
    std::int64_t sequence = 0;
    std::string uuid{};
    std::string groupCode{};
    std::string externalId{};
    std::string operation{};
    std::string login{};
    TimePoint receivedAt{};
    /// The body of the call, reserialised as one line of UTF-8, so that a text is found however the client
    /// escaped it.
    std::string body{};
    std::int64_t totalKopecks = 0;
    std::string callbackUrl{};
    std::string deviceCode{};
    /// Status answers say "not processed yet" until then.
    TimePoint readyAt{};
    /// This many more status answers say so too.
    int waitsLeft = 0;
    Outcome outcome = Outcome::Done;
    /// Payload of the status answer if the document is done, otherwise null.
    Json payload{};
    /// Error object if the document failed, otherwise null.
    Json error{};
};

/// Which documents to list; an empty field does not filter.
struct DocumentFilter
{
    std::string group{};
    /// May contain `*` and `?`.
    std::string externalId{};
    std::string operation{};
    /// Part of the uuid, the external id or the body.
    std::string text{};
    /// `wait`, `done` or `fail`, at the time `now`.
    std::string status{};
    TimePoint now{};
    /// Only documents with a lower sequence; 0 means no limit.
    std::int64_t before = 0;
    int limit = 100;
};

} // namespace emulator
