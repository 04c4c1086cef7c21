#include "queue/work/ending.h"

#include "till/wire/servicecodes.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace queue;
using till::SaleVerdict;
using till::ServiceCode;
using namespace std::chrono_literals;

struct Case
{
    const char* name;
    // Before the attempt.
    State before;
    bool maybeSent;
    int fruitless;
    // The attempt.
    SaleVerdict verdict;
    bool receiptSent;
    std::optional<ServiceCode> code;
    bool lastAnswered;
    // What becomes of it.
    State after;
    bool isHeld;
    bool pauses;
    bool hasSameContent = true;
};

constexpr Case cases[] = {
    {"a failure uses the id up", State::Queued, false, 0, SaleVerdict::Failed, true, std::nullopt, true,
        State::Failed, false, false},
    {"a refused receipt", State::Queued, false, 0, SaleVerdict::Refused, true, ServiceCode::InvalidReceipt,
        true, State::Refused, false, false},
    {"a refused request, never sent before", State::Queued, false, 0, SaleVerdict::Refused, true,
        ServiceCode::UnknownDocument, true, State::Refused, false, false},
    {"a refused request does not outweigh an earlier attempt", State::Unknown, true, 0, SaleVerdict::Refused,
        true, ServiceCode::UnknownDocument, true, State::Unknown, true, false},
    {"a refused content after an unknown attempt with the same", State::Unknown, true, 0,
        SaleVerdict::Refused, true, ServiceCode::InvalidReceipt, true, State::Refused, false, false},
    {"a refused content says nothing of another that was sent before", State::Unknown, true, 0,
        SaleVerdict::Refused, true, ServiceCode::InvalidReceipt, true, State::Unknown, true, false, false},
    {"what the service could not process, it may process later", State::Queued, false, 0,
        SaleVerdict::Refused, true, ServiceCode::NotProcessed, true, State::Unknown, false, false},
    {"the configuration is at fault, and not the receipt", State::Queued, false, 0, SaleVerdict::Refused,
        true, ServiceCode::WrongInn, true, State::Queued, false, true},
    {"the request is at fault, and not the receipt", State::Unknown, true, 0, SaleVerdict::Refused, true,
        ServiceCode::BadRequest, true, State::Unknown, false, true},
    {"the driver refuses it", State::Queued, false, 0, SaleVerdict::Refused, false, std::nullopt, true,
        State::Queued, true, false},
    {"a refusal does not take back a registration", State::Incomplete, true, 1, SaleVerdict::Refused, true,
        ServiceCode::InvalidReceipt, true, State::Incomplete, false, false},
    {"a failure does not take back a registration", State::Incomplete, true, 1, SaleVerdict::Failed, true,
        std::nullopt, true, State::Incomplete, false, false},
    {"the account is refused", State::Queued, false, 0, SaleVerdict::AccountRefused, true,
        ServiceCode::WrongGroup, true, State::Queued, false, true},
    {"the account is refused after an unknown attempt", State::Unknown, true, 2, SaleVerdict::AccountRefused,
        true, ServiceCode::WrongCredentials, true, State::Unknown, false, true},
    {"no connection", State::Queued, false, 0, SaleVerdict::NotSent, false, std::nullopt, false,
        State::Queued, false, true},
    {"a lost answer", State::Queued, false, 0, SaleVerdict::Unknown, true, std::nullopt, false,
        State::Unknown, false, true},
    {"an answer that says nothing", State::Queued, false, 0, SaleVerdict::Unknown, true,
        ServiceCode::ServerError, true, State::Unknown, false, false},
    {"no evidence yet", State::Queued, false, 0, SaleVerdict::Incomplete, true, std::nullopt, true,
        State::Incomplete, false, false},
    {"no evidence for the third time", State::Incomplete, true, 2, SaleVerdict::Incomplete, true,
        std::nullopt, true, State::Incomplete, true, false},
    {"no evidence for the first time, after attempts without an answer", State::Unknown, true, 5,
        SaleVerdict::Incomplete, true, std::nullopt, true, State::Incomplete, false, false},
    {"another receipt's id", State::Queued, false, 0, SaleVerdict::ForeignId, true,
        ServiceCode::DocumentExists, true, State::Refused, false, false},
    {"an id that only we have used", State::Unknown, true, 0, SaleVerdict::ForeignId, true,
        ServiceCode::DocumentExists, true, State::Incomplete, false, false},
    {"registered without its data", State::Queued, false, 0, SaleVerdict::Registered, true, std::nullopt,
        true, State::Incomplete, false, false},
};

TEST(Ending, FollowsFromWhatTheServiceSaysOfTheReceipt)
{
    for (const Case& one : cases) {
        Entry entry;
        entry.state = one.before;
        entry.maybeSent = one.maybeSent;
        entry.fruitless = one.fruitless;
        till::ReceiptResult result;
        result.verdict = one.verdict;
        result.next = till::nextStepOf(one.verdict, one.code);
        till::WireRecord seen;
        seen.receiptSent = one.receiptSent;
        seen.registration.errorCode = one.code;
        seen.lastAnswered = one.lastAnswered;
        const Judgement judgement = judge(entry, result, seen, one.hasSameContent);
        EXPECT_EQ(judgement.ending.state, one.after) << one.name;
        EXPECT_EQ(judgement.ending.isHeld, one.isHeld) << one.name;
        EXPECT_EQ(!judgement.trouble.isEmpty(), one.pauses) << one.name;
        EXPECT_TRUE(!one.maybeSent || judgement.ending.maybeSent) << one.name;
    }
}

// A receipt at which the service falls silent every time would keep all others waiting.
TEST(Ending, OfARepeatedSilenceLetsOthersGoFirst)
{
    till::ReceiptResult result;
    till::WireRecord silence;
    silence.receiptSent = true;
    silence.lastAnswered = false;
    Entry entry;
    std::vector<std::chrono::milliseconds> delays;
    for (int i = 0; i < 7; ++i) {
        const Ending ending = judge(entry, result, silence, true).ending;
        delays.push_back(ending.delay);
        entry.state = ending.state;
        entry.fruitless = ending.fruitless;
        EXPECT_FALSE(ending.isHeld);
    }
    EXPECT_EQ(delays, (std::vector<std::chrono::milliseconds>{0s, 4s, 8s, 16s, 32s, 60s, 60s}));
}

// No attempt counts against a receipt that a fault of the register has ended.
TEST(Ending, OfASilenceHoldsNoReceiptBack)
{
    till::WireRecord silence;
    silence.receiptSent = true;
    silence.lastAnswered = false;
    Entry entry;
    entry.state = State::Incomplete;
    entry.maybeSent = true;
    entry.fruitless = 1;
    EXPECT_EQ(judge(entry, {}, silence, true).ending.fruitless, 1);
    till::ReceiptResult refused;
    refused.verdict = SaleVerdict::AccountRefused;
    EXPECT_EQ(judge(entry, refused, {}, true).ending.fruitless, 1);
    EXPECT_EQ(judge(entry, refused, {}, true).ending.delay, 0s);
}

TEST(Ending, OfARegistrationHasItsEvidence)
{
    till::ReceiptResult result;
    result.verdict = SaleVerdict::Registered;
    result.uuid = QStringLiteral("u-1");
    result.fiscal = FiscalInfo{};
    result.fiscal->fnNumber = QStringLiteral("99");
    const Judgement judgement = judge({}, result, {}, true);
    EXPECT_EQ(judgement.ending.state, State::Registered);
    ASSERT_TRUE(judgement.ending.evidence);
    EXPECT_EQ(judgement.ending.evidence->storage, QStringLiteral("99"));
}

// Nothing of an attempt that reached nobody counts: the receipt may still be cancelled.
TEST(Ending, OfWhatWasNotSentLeavesNoTrace)
{
    till::ReceiptResult result;
    result.verdict = SaleVerdict::NotSent;
    EXPECT_FALSE(judge({}, result, {}, true).ending.maybeSent);
}

} // namespace
