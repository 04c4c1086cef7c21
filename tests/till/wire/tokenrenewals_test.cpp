#include "till/wire/tokenrenewals.h"

#include <gtest/gtest.h>

namespace {

using namespace till;
using namespace std::chrono_literals;

TEST(TokenRenewals, ArePausedLongerEachTimeAndThenGivenUp)
{
    TokenRenewals renewals({0ms, 10ms, 20ms});
    for (const auto pause : {0ms, 10ms, 20ms}) {
        renewals.noteRejected();
        EXPECT_FALSE(renewals.areExhausted());
        EXPECT_EQ(renewals.next(), pause);
        EXPECT_TRUE(renewals.hasRenewed());
    }
    EXPECT_FALSE(renewals.areExhausted()) << "the last token has not been tried yet";
    renewals.noteRejected();
    EXPECT_TRUE(renewals.areExhausted());
    EXPECT_EQ(renewals.next(), std::nullopt);
}

TEST(TokenRenewals, StartAgainAfterAnAcceptedToken)
{
    TokenRenewals renewals({0ms, 10ms});
    for (int row = 0; row < 3; ++row) {
        for (const auto pause : {0ms, 10ms}) {
            renewals.noteRejected();
            EXPECT_EQ(renewals.next(), pause);
        }
        renewals.noteAccepted();
        EXPECT_FALSE(renewals.hasRenewed());
    }
}

TEST(TokenRenewals, AreNotCountedWhereNoTokenWasRejected)
{
    TokenRenewals renewals({10ms});
    for (int request = 0; request < 3; ++request)
        EXPECT_EQ(renewals.next(), 0ms);
    EXPECT_FALSE(renewals.hasRenewed());
}

TEST(TokenRenewals, UsuallyTakeSomeSecondsInAll)
{
    const auto pauses = TokenRenewals::usualPauses();
    EXPECT_EQ(pauses.front(), 0ms) << "an expired token is renewed at once";
    for (std::size_t i = 2; i < pauses.size(); ++i)
        EXPECT_GT(pauses[i], pauses[i - 1]);
    EXPECT_GE(pauses.at(1), 1s);
}

} // namespace
