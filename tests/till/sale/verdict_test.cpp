#include "tests/support/qtprinters.h"
#include "till/sale/verdict.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

inline void PrintTo(SaleVerdict verdict, std::ostream* out)
{
    constexpr const char* names[] = {
        "Registered", "Refused", "NotSent", "Failed", "Unknown", "TakeExisting", "AskAgain"};
    *out << names[static_cast<int>(verdict)];
}

inline void PrintTo(DocumentState state, std::ostream* out)
{
    constexpr const char* names[] = {"Registered", "Failed", "Waiting", "NoNews", "Doubtful"};
    *out << names[static_cast<int>(state)];
}

namespace {

const QString id = u"till-1"_s;

ServiceAnswer status(const char* text, std::optional<int> code = {}, const char* externalId = "till-1")
{
    ServiceAnswer answer;
    answer.arrived = true;
    answer.status = QString::fromLatin1(text);
    answer.errorCode = code;
    answer.externalId = QString::fromLatin1(externalId);
    return answer;
}

ServiceAnswer accepted(const char* uuid = "u")
{
    ServiceAnswer answer = status("wait", {}, "");
    answer.uuid = QString::fromLatin1(uuid);
    return answer;
}

ServiceAnswer answeredWith(int code, const char* uuid = "")
{
    ServiceAnswer answer = status("fail", code, "");
    answer.uuid = QString::fromLatin1(uuid);
    answer.errorType = u"system"_s;
    return answer;
}

SaleVerdict afterAnswer(
    const ServiceAnswer& registration, const ServiceAnswer& last = {}, bool driverFailed = true)
{
    Exchange seen;
    seen.receiptSent = true;
    seen.registration = registration;
    seen.status = last;
    return judgeSale(seen, id, driverFailed);
}

SaleVerdict afterSending(const ServiceAnswer& registration, bool driverFailed = true)
{
    Exchange seen;
    seen.receiptSent = true;
    seen.registration = registration;
    return judgeSending(seen, driverFailed);
}

TEST(Outcome, IsRefusedWhenTheDriverSentNothing)
{
    EXPECT_EQ(judgeSale({}, id, true), SaleVerdict::Refused);
    EXPECT_EQ(judgeSending({}, true), SaleVerdict::Refused);
}

TEST(Outcome, OfALostConnectionIsNeverThatItWasRefused)
{
    Exchange seen;
    seen.lastAnswered = false;
    for (const bool driverFailed : {true, false}) {
        EXPECT_EQ(judgeSale(seen, id, driverFailed), SaleVerdict::NotSent);
        EXPECT_EQ(judgeSending(seen, driverFailed), SaleVerdict::NotSent);
    }
    seen.receiptSent = true;
    EXPECT_EQ(judgeSale(seen, id, true), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending(seen, true), SaleVerdict::Unknown);
}

TEST(Outcome, IsRefusedWhenTheServiceAnsweredButGaveNoToken)
{
    Exchange seen;
    seen.lastAnswered = true;
    EXPECT_EQ(judgeSale(seen, id, true), SaleVerdict::Refused);
}

TEST(Outcome, IsUnknownWhenTheDriverSaysItSentWhatNobodySaw)
{
    EXPECT_EQ(judgeSale({}, id, false), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending({}, false), SaleVerdict::Unknown);
}

TEST(Outcome, IsUnknownWithoutAnAnswer)
{
    EXPECT_EQ(afterAnswer({}), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending({}), SaleVerdict::Unknown);
}

TEST(Outcome, FollowsTheMeaningOfTheCodeThatAnswersTheReceipt)
{
    for (const int code : {1, 2, 10, 11, 12, 13, 14, 20, 21, 30, 31, 32, 40, 41}) {
        EXPECT_EQ(afterAnswer(answeredWith(code)), SaleVerdict::Refused) << code;
        EXPECT_EQ(afterSending(answeredWith(code)), SaleVerdict::Refused) << code;
    }
    for (const int code : {-2, 0, 3, 9, 15, 22, 35, 42, 50, 51, 429, 2003}) {
        EXPECT_EQ(afterAnswer(answeredWith(code)), SaleVerdict::Unknown) << code;
        EXPECT_EQ(afterSending(answeredWith(code)), SaleVerdict::Unknown) << code;
    }
}

TEST(Outcome, OfAKnownIdIsThatOfTheEarlierTry)
{
    EXPECT_EQ(afterAnswer(answeredWith(33, "u")), SaleVerdict::TakeExisting);
    EXPECT_EQ(afterSending(answeredWith(33, "u"), false), SaleVerdict::Registered);
    EXPECT_EQ(afterSending(answeredWith(33), false), SaleVerdict::Unknown);
}

TEST(Outcome, OfAReceiptInProgressHasToBeAsked)
{
    EXPECT_EQ(afterAnswer(answeredWith(34, "u")), SaleVerdict::AskAgain);
    EXPECT_EQ(afterAnswer(answeredWith(34)), SaleVerdict::Unknown);
}

TEST(Outcome, IsUnknownWhenTheServiceGaveNoIdentifier)
{
    EXPECT_EQ(afterAnswer(accepted(""), status("done"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(accepted(""), false), SaleVerdict::Unknown);
}

TEST(Outcome, FollowsTheLastStatusOfAnAcceptedReceipt)
{
    EXPECT_EQ(afterAnswer(accepted(), status("done"), false), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), status("done"), true), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), status("fail"), false), SaleVerdict::Failed);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", 502)), SaleVerdict::Failed);
    EXPECT_EQ(afterAnswer(accepted(), status("DONE"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), status("done", {}, "till-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", {}, "till-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(accepted(), false), SaleVerdict::Registered);
}

TEST(Outcome, OfAnAcceptedReceiptIsAskedAgainAfterAFailureThatIsNotItsOwn)
{
    EXPECT_EQ(afterAnswer(accepted()), SaleVerdict::AskAgain);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(11)), SaleVerdict::AskAgain);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(30)), SaleVerdict::AskAgain);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(50)), SaleVerdict::AskAgain);
}

TEST(DocumentState, ToldByOneAnswer)
{
    EXPECT_EQ(judgeStatus({}, id), DocumentState::NoNews);
    EXPECT_EQ(judgeStatus(status("wait"), id), DocumentState::Waiting);
    EXPECT_EQ(judgeStatus(status("wait", 34), id), DocumentState::Waiting);
    EXPECT_EQ(judgeStatus(status("done"), id), DocumentState::Registered);
    EXPECT_EQ(judgeStatus(status("done", {}, ""), id), DocumentState::Registered);
    EXPECT_EQ(judgeStatus(status("done", 50), id), DocumentState::NoNews);
    EXPECT_EQ(judgeStatus(status("fail"), id), DocumentState::Failed);
    EXPECT_EQ(judgeStatus(answeredWith(11), id), DocumentState::NoNews);
    EXPECT_EQ(judgeStatus(status(""), id), DocumentState::Doubtful);
    EXPECT_EQ(judgeStatus(status("done", {}, "other"), id), DocumentState::Doubtful);
}

struct Awaited
{
    DocumentState state;
    int pauses;

    bool operator==(const Awaited&) const = default;
};

Awaited awaited(std::vector<DocumentState> answers)
{
    auto next = answers.begin();
    Awaited result{};
    result.state = awaitDocument([&] { return *next++; }, [&] { ++result.pauses; });
    EXPECT_EQ(next, answers.end());
    return result;
}

TEST(AwaitDocument, AsksUntilTheDocumentIsFinished)
{
    using enum DocumentState;
    EXPECT_EQ(awaited({Registered}), (Awaited{Registered, 0}));
    EXPECT_EQ(awaited({Waiting, Waiting, Waiting, Waiting, Failed}), (Awaited{Failed, 4}));
    EXPECT_EQ(awaited({Waiting, Doubtful}), (Awaited{Doubtful, 1}));
}

TEST(AwaitDocument, GivesUpAfterThreeQuestionsInARowWithoutNews)
{
    using enum DocumentState;
    EXPECT_EQ(awaited({NoNews, NoNews, NoNews}), (Awaited{NoNews, 2}));
    EXPECT_EQ(awaited({NoNews, NoNews, Waiting, NoNews, NoNews, Registered}), (Awaited{Registered, 5}));
}

} // namespace

} // namespace frhost
