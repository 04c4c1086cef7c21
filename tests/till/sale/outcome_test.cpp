#include "tests/support/qtprinters.h"
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
        bool endsRun;
    };
    const Row rows[] = {
        {SaleVerdict::Registered, Outcome::Registered, false, false},
        {SaleVerdict::Incomplete, Outcome::Incomplete, true, false},
        {SaleVerdict::Accepted, std::nullopt, false, false},
        {SaleVerdict::Refused, Outcome::Refused, true, false},
        {SaleVerdict::AccountRefused, Outcome::Refused, false, true},
        {SaleVerdict::NotSent, Outcome::Unknown, true, true},
        {SaleVerdict::Failed, Outcome::Refused, true, false},
        {SaleVerdict::ForeignId, Outcome::Refused, true, false},
        {SaleVerdict::Unknown, Outcome::Unknown, true, true},
        {SaleVerdict::RefusedOnce, Outcome::Unknown, true, true},
        {SaleVerdict::Existing, Outcome::Unknown, true, true},
        {SaleVerdict::Unfinished, Outcome::Unknown, true, true},
        {SaleVerdict::FailedOnce, Outcome::Unknown, true, true},
    };
    for (const Row& row : rows) {
        const Conclusion conclusion = conclusionOf(row.verdict);
        EXPECT_EQ(conclusion.outcome, row.outcome) << static_cast<int>(row.verdict);
        EXPECT_EQ(!conclusion.advice.isEmpty(), row.hasAdvice) << static_cast<int>(row.verdict);
        EXPECT_EQ(conclusion.endsRun, row.endsRun) << static_cast<int>(row.verdict);
    }
}

TEST(NextStep, FollowsFromTheVerdictAndTheCodeOfARefusal)
{
    struct Row
    {
        SaleVerdict verdict;
        std::optional<ServiceCode> refusal;
        const char* next;
    };
    const Row rows[] = {
        {SaleVerdict::Registered, {}, "none"},
        {SaleVerdict::Registered, ServiceCode::DocumentExists, "none"},
        {SaleVerdict::Accepted, {}, "none"},
        {SaleVerdict::Incomplete, {}, "rerun"},
        {SaleVerdict::Refused, {}, "correct"},
        {SaleVerdict::Refused, ServiceCode::InvalidReceipt, "correct"},
        {SaleVerdict::Refused, ServiceCode::WrongInn, "account"},
        {SaleVerdict::Refused, ServiceCode::NotProcessed, "rerun"},
        {SaleVerdict::Refused, ServiceCode::UnsupportedOperation, "account"},
        {SaleVerdict::AccountRefused, ServiceCode::WrongGroup, "account"},
        {SaleVerdict::NotSent, {}, "rerun"},
        {SaleVerdict::Failed, ServiceCode::InvalidReceipt, "new-id"},
        {SaleVerdict::ForeignId, ServiceCode::DocumentExists, "new-id"},
        {SaleVerdict::Unknown, ServiceCode::InvalidReceipt, "rerun"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(nextStepName(nextStepOf(row.verdict, row.refusal)), QString::fromLatin1(row.next))
            << static_cast<int>(row.verdict);
}

TEST(RefusalAdvice, IsGeneralForACodeThatNobodyKnows)
{
    EXPECT_EQ(refusalAdvice(ServiceCode{777}), conclusionOf(SaleVerdict::Refused).advice);
}

TEST(AccountAdvice, SaysWhatToCorrect)
{
    struct Row
    {
        ServiceCode code;
        const char* correct;
    };
    const Row rows[] = {
        {ServiceCode::WrongCredentials, "Correct login and password in the configuration."},
        {ServiceCode::InvalidTokenRequest, "Correct login and password in the configuration."},
        {ServiceCode::BlockedUser, "ask the service."},
        {ServiceCode::WrongGroup, "Correct groupCode"},
        {ServiceCode::WrongProtocol, "correct groupCode in the configuration."},
    };
    for (const Row& row : rows)
        EXPECT_TRUE(accountAdvice(row.code).contains(QString::fromLatin1(row.correct)))
            << static_cast<int>(row.code);
}

} // namespace
