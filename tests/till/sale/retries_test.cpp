#include "till/sale/retries.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace till;
using namespace std::chrono_literals;

// Time passes only in the pauses.
class Repeated : public testing::Test
{
protected:
    [[nodiscard]] ReceiptResult after(
        std::chrono::milliseconds longest, const std::vector<ReceiptResult>& attempts)
    {
        Retries retries(
            longest, [this] { return now; },
            [this](std::chrono::milliseconds time) {
                pauses.push_back(time);
                now += time;
            });
        std::size_t next = 0;
        return repeated(
            retries, [&] { return attempts[std::min(next++, attempts.size() - 1)]; },
            [this](const ReceiptResult&) { ++noted; });
    }

    std::chrono::steady_clock::time_point now;
    std::vector<std::chrono::milliseconds> pauses;
    int noted = 0;
};

ReceiptResult resultOf(SaleVerdict verdict, bool sent)
{
    ReceiptResult result;
    result.verdict = verdict;
    result.outcome = conclusionOf(verdict).outcome;
    result.next = nextStepOf(verdict, {});
    result.sent = sent;
    return result;
}

ReceiptResult registered()
{
    return resultOf(SaleVerdict::Registered, true);
}

ReceiptResult unknown()
{
    return resultOf(SaleVerdict::Unknown, true);
}

ReceiptResult notSent()
{
    return resultOf(SaleVerdict::NotSent, false);
}

TEST_F(Repeated, IsOnlyWhatMayBeRunAgain)
{
    for (const SaleVerdict verdict :
        {SaleVerdict::Registered, SaleVerdict::Incomplete, SaleVerdict::Accepted, SaleVerdict::Refused,
            SaleVerdict::AccountRefused, SaleVerdict::Failed, SaleVerdict::ForeignId}) {
        EXPECT_EQ(after(1h, {resultOf(verdict, true)}).verdict, verdict);
        EXPECT_EQ(pauses.size(), 0U) << static_cast<int>(verdict);
    }
    EXPECT_EQ(after(1h, {notSent(), unknown(), registered()}).verdict, SaleVerdict::Registered);
    EXPECT_EQ(noted, 2);
}

TEST_F(Repeated, PausesLongerEachTimeUntilTheTimeIsOver)
{
    EXPECT_EQ(after(150s, {notSent()}).verdict, SaleVerdict::NotSent);
    EXPECT_EQ(pauses, (std::vector<std::chrono::milliseconds>{1s, 2s, 4s, 8s, 16s, 32s, 60s, 27s}));
}

TEST_F(Repeated, IsNothingWithoutTime)
{
    EXPECT_EQ(after(0s, {notSent(), registered()}).verdict, SaleVerdict::NotSent);
    EXPECT_EQ(noted, 0);
}

TEST_F(Repeated, NeverForgetsThatAnEarlierAttemptWasSent)
{
    const ReceiptResult offline = after(2s, {unknown(), notSent()});
    EXPECT_EQ(offline.verdict, SaleVerdict::Unknown);
    EXPECT_TRUE(offline.sent);
    EXPECT_TRUE(after(1h, {unknown(), resultOf(SaleVerdict::Refused, false)}).sent);
}

} // namespace
