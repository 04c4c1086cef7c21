#pragma once

#include "till/sale/result.h"

#include <chrono>
#include <functional>
#include <optional>

namespace till {

/// How long to go on with what may be repeated safely: for a limited time from the first failure on, with
/// pauses that grow from a second to a minute.
class Retries
{
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    using Sleep = std::function<void(std::chrono::milliseconds)>;

    explicit Retries(std::chrono::milliseconds longestTime);
    Retries(std::chrono::milliseconds longestTime, Clock usedClock, Sleep usedSleep);

    /// After a failure: blocks for the next pause and returns true, or false when the time is over.
    [[nodiscard]] bool again();

private:
    std::chrono::milliseconds longest;
    Clock clock;
    Sleep sleep;
    std::optional<std::chrono::steady_clock::time_point> firstFailure;
    std::chrono::milliseconds pause;
};

/// Attempts a receipt again under its id as long as its outcome is unknown and running it again may settle
/// it. `note` is told of each result that is followed by another attempt.
[[nodiscard]] ReceiptResult repeated(Retries& retries, const std::function<ReceiptResult()>& attempt,
    const std::function<void(const ReceiptResult&)>& note);

} // namespace till
