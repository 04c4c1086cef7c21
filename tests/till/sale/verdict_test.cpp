#include "tests/support/qtprinters.h"
#include "till/sale/verdict.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace till {

inline void PrintTo(SaleVerdict verdict, std::ostream* out)
{
    constexpr const char* names[] = {"Registered", "Incomplete", "Accepted", "Refused", "NotSent", "Failed",
        "ForeignId", "Unknown", "Existing", "Unfinished"};
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
    answer.hasError = code.has_value();
    if (code)
        answer.errorCode = ServiceCode{*code};
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
    WireRecord seen;
    seen.receiptSent = true;
    seen.registration = registration;
    seen.status = last;
    return judgeSale(seen, id, driverFailed);
}

SaleVerdict afterSending(const ServiceAnswer& registration, bool driverFailed = true)
{
    WireRecord seen;
    seen.receiptSent = true;
    seen.registration = registration;
    return judgeSending(seen, driverFailed);
}

TEST(Verdict, IsRefusedWhenTheDriverSentNothing)
{
    EXPECT_EQ(judgeSale({}, id, true), SaleVerdict::Refused);
    EXPECT_EQ(judgeSending({}, true), SaleVerdict::Refused);
}

TEST(Verdict, OfALostConnectionIsNeverThatItWasRefused)
{
    WireRecord seen;
    seen.lastAnswered = false;
    for (const bool driverFailed : {true, false}) {
        EXPECT_EQ(judgeSale(seen, id, driverFailed), SaleVerdict::NotSent);
        EXPECT_EQ(judgeSending(seen, driverFailed), SaleVerdict::NotSent);
    }
    seen.receiptSent = true;
    EXPECT_EQ(judgeSale(seen, id, true), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending(seen, true), SaleVerdict::Unknown);
}

TEST(Verdict, IsRefusedWhenTheServiceAnsweredButGaveNoToken)
{
    WireRecord seen;
    seen.lastAnswered = true;
    EXPECT_EQ(judgeSale(seen, id, true), SaleVerdict::Refused);
}

TEST(Verdict, IsUnknownWhenTheDriverSaysItSentWhatNobodySaw)
{
    EXPECT_EQ(judgeSale({}, id, false), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending({}, false), SaleVerdict::Unknown);
}

TEST(Verdict, IsUnknownWithoutAnAnswer)
{
    EXPECT_EQ(afterAnswer({}), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending({}), SaleVerdict::Unknown);
}

TEST(Verdict, FollowsTheMeaningOfTheCodeThatAnswersTheReceipt)
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

TEST(Verdict, OfAKnownIdIsThatOfTheEarlierTry)
{
    EXPECT_EQ(afterAnswer(answeredWith(33, "u")), SaleVerdict::Existing);
    EXPECT_EQ(afterSending(answeredWith(33, "u"), false), SaleVerdict::Accepted);
    EXPECT_EQ(afterSending(answeredWith(33), false), SaleVerdict::Unknown);
}

TEST(Verdict, OfAReceiptInProgressHasToBeAsked)
{
    EXPECT_EQ(afterAnswer(answeredWith(34, "u")), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(answeredWith(34)), SaleVerdict::Unknown);
}

TEST(Verdict, IsUnknownWhenTheServiceGaveNoIdentifier)
{
    EXPECT_EQ(afterAnswer(accepted(""), status("done"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(accepted(""), false), SaleVerdict::Unknown);
}

TEST(Verdict, FollowsTheLastStatusOfAnAcceptedReceipt)
{
    EXPECT_EQ(afterAnswer(accepted(), status("done"), false), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), status("done"), true), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), status("fail"), false), SaleVerdict::Failed);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", 502)), SaleVerdict::Failed);
    EXPECT_EQ(afterAnswer(accepted(), status("DONE"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), status("done", {}, "till-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", {}, "till-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(accepted(), false), SaleVerdict::Accepted);
}

TEST(Verdict, OfAnAcceptedReceiptIsAskedAgainAfterAFailureThatIsNotItsOwn)
{
    EXPECT_EQ(afterAnswer(accepted()), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(11)), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(30)), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(50)), SaleVerdict::Unfinished);
}

TEST(Verdict, OfARegisteredReceiptNeedsItsOwnTotal)
{
    using enum SaleVerdict;
    EXPECT_EQ(compareTotals(Registered, 160.0, 160.0), Registered);
    EXPECT_EQ(compareTotals(Registered, 160.004, 160.0), Registered);
    EXPECT_EQ(compareTotals(Registered, 160.01, 160.0), ForeignId);
    EXPECT_EQ(compareTotals(Registered, 5.0, 160.0), ForeignId);
    EXPECT_EQ(compareTotals(Registered, std::nullopt, 160.0), Registered);
    for (const SaleVerdict other : {Refused, Failed, Unknown, Unfinished})
        EXPECT_EQ(compareTotals(other, 5.0, 160.0), other);
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

} // namespace till
