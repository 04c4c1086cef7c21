#include "till/sale/retries.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace till {

namespace {

constexpr std::chrono::milliseconds firstPause = std::chrono::seconds(1);
constexpr std::chrono::milliseconds longestPause = std::chrono::minutes(1);

bool maySettle(const ReceiptResult& result)
{
    return result.outcome == Outcome::Unknown && result.next == NextStep::Rerun;
}

} // namespace

Retries::Retries(std::chrono::milliseconds longestTime)
    : Retries(longestTime, &std::chrono::steady_clock::now,
          [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); })
{
}

Retries::Retries(std::chrono::milliseconds longestTime, Clock usedClock, Sleep usedSleep)
    : longest(longestTime)
    , clock(std::move(usedClock))
    , sleep(std::move(usedSleep))
    , pause(firstPause)
{
}

bool Retries::again()
{
    const auto now = clock();
    if (!firstFailure)
        firstFailure = now;
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(*firstFailure + longest - now);
    if (rest <= std::chrono::milliseconds::zero())
        return false;
    sleep(std::min(pause, rest));
    pause = std::min(pause * 2, longestPause);
    return true;
}

ReceiptResult repeated(Retries& retries, const std::function<ReceiptResult()>& attempt,
    const std::function<void(const ReceiptResult&)>& note)
{
    ReceiptResult result = attempt();
    while (maySettle(result) && retries.again()) {
        note(result);
        ReceiptResult later = attempt();
        // That the last attempt sent nothing says nothing of what the earlier ones sent.
        if (result.sent && later.verdict == SaleVerdict::NotSent)
            continue;
        later.sent = later.sent || result.sent;
        result = std::move(later);
    }
    return result;
}

} // namespace till
