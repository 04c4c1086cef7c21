#include "till/sale/outcome.h"

#include <gtest/gtest.h>

namespace {

using namespace till;

TEST(Conclusion, NamesTheOutcomeOfEachVerdict)
{
    struct Row
    {
        SaleVerdict verdict;
        std::optional<Outcome> outcome;
        bool hasAdvice;
    };
    const Row rows[] = {
        {SaleVerdict::Registered, Outcome::Registered, false},
        {SaleVerdict::Incomplete, Outcome::Incomplete, true},
        {SaleVerdict::Accepted, std::nullopt, false},
        {SaleVerdict::Refused, Outcome::Refused, true},
        {SaleVerdict::NotSent, Outcome::Unknown, true},
        {SaleVerdict::Failed, Outcome::Refused, true},
        {SaleVerdict::ForeignId, Outcome::Refused, true},
        {SaleVerdict::Unknown, Outcome::Unknown, true},
        {SaleVerdict::Existing, Outcome::Unknown, true},
        {SaleVerdict::Unfinished, Outcome::Unknown, true},
    };
    for (const Row& row : rows) {
        const Conclusion conclusion = conclusionOf(row.verdict);
        EXPECT_EQ(conclusion.outcome, row.outcome) << static_cast<int>(row.verdict);
        EXPECT_EQ(!conclusion.advice.isEmpty(), row.hasAdvice) << static_cast<int>(row.verdict);
    }
}

} // namespace
