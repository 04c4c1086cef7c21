#include "tests/support/qtprinters.h"
#include "till/sale/verdict.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace till {

inline void PrintTo(SaleVerdict verdict, std::ostream* out)
{
    constexpr const char* names[] = {"Registered", "Incomplete", "Accepted", "Refused", "AccountRefused",
        "NotSent", "Failed", "ForeignId", "Unknown", "RefusedOnce", "Existing", "Unfinished", "FailedOnce"};
    *out << names[static_cast<int>(verdict)];
}

inline void PrintTo(DocumentState state, std::ostream* out)
{
    constexpr const char* names[] = {"Registered", "Failed", "Waiting", "NoNews", "Doubtful"};
    *out << names[static_cast<int>(state)];
}

namespace {

const ReceiptFacts receipt{u"till-1"_s, 160};

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

QVariantMap payload(double total)
{
    return {{u"total"_s, total}, {u"fn_number"_s, u"0251440300046840"_s},
        {u"fiscal_document_number"_s, 29414LL}, {u"fiscal_document_attribute"_s, 3449555941LL}};
}

ServiceAnswer done(double total = 160, const char* uuid = "u", const char* externalId = "till-1")
{
    ServiceAnswer answer = status("done", {}, externalId);
    answer.uuid = QString::fromLatin1(uuid);
    answer.payload = payload(total);
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
    return judgeSale(seen, receipt, driverFailed);
}

SaleVerdict afterSending(const ServiceAnswer& registration, bool driverFailed = true)
{
    WireRecord seen;
    seen.receiptSent = true;
    seen.registration = registration;
    return judgeSending(seen, receipt.id, driverFailed);
}

TEST(Verdict, IsRefusedWhenTheDriverSentNothing)
{
    EXPECT_EQ(judgeSale({}, receipt, true), SaleVerdict::Refused);
    EXPECT_EQ(judgeSending({}, receipt.id, true), SaleVerdict::Refused);
}

TEST(Verdict, OfALostConnectionIsNeverThatItWasRefused)
{
    WireRecord seen;
    seen.lastAnswered = false;
    for (const bool driverFailed : {true, false}) {
        EXPECT_EQ(judgeSale(seen, receipt, driverFailed), SaleVerdict::NotSent);
        EXPECT_EQ(judgeSending(seen, receipt.id, driverFailed), SaleVerdict::NotSent);
    }
    seen.receiptSent = true;
    EXPECT_EQ(judgeSale(seen, receipt, true), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending(seen, receipt.id, true), SaleVerdict::Unknown);
}

TEST(Verdict, IsNotSentWhenOnlyARequestForATokenWasAnswered)
{
    WireRecord seen;
    seen.lastAnswered = true;
    EXPECT_EQ(judgeSale(seen, receipt, true), SaleVerdict::NotSent);
    EXPECT_EQ(judgeSending(seen, receipt.id, true), SaleVerdict::NotSent);
}

TEST(Verdict, IsUnknownWhenTheDriverSaysItSentWhatNobodySaw)
{
    EXPECT_EQ(judgeSale({}, receipt, false), SaleVerdict::Unknown);
    EXPECT_EQ(judgeSending({}, receipt.id, false), SaleVerdict::Unknown);
}

TEST(Verdict, IsUnknownWithoutAnAnswer)
{
    EXPECT_EQ(afterAnswer({}), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending({}), SaleVerdict::Unknown);
}

TEST(Verdict, FollowsTheMeaningOfTheCodeThatAnswersTheReceipt)
{
    for (const int code : {1, 2, 12, 13, 14, 20, 21, 30, 31, 32, 40, 41}) {
        EXPECT_EQ(afterAnswer(answeredWith(code)), SaleVerdict::RefusedOnce) << code;
        EXPECT_EQ(afterSending(answeredWith(code)), SaleVerdict::RefusedOnce) << code;
    }
    for (const int code : {-2, -1, 0, 3, 9, 10, 11, 15, 22, 35, 42, 50, 51, 429, 2003}) {
        EXPECT_EQ(afterAnswer(answeredWith(code)), SaleVerdict::Unknown) << code;
        EXPECT_EQ(afterSending(answeredWith(code)), SaleVerdict::Unknown) << code;
    }
}

TEST(Verdict, OfARepeatedRefusalTellsWhetherTheAccountIsAtFault)
{
    for (const int code : {12, 13, 14, 20, 21})
        EXPECT_EQ(confirmed(ServiceCode{code}), SaleVerdict::AccountRefused) << code;
    for (const int code : {1, 2, 30, 31, 32, 40, 41})
        EXPECT_EQ(confirmed(ServiceCode{code}), SaleVerdict::Refused) << code;
}

TEST(Verdict, IsUnknownWhenNoTokenCouldBeHadForAReceiptThatWasSent)
{
    for (const int code : {10, 11}) {
        for (const std::optional<int> tokenCode : {std::optional<int>(), {12}, {50}}) {
            WireRecord seen;
            seen.receiptSent = true;
            seen.registration = answeredWith(code);
            seen.lastAnswered = tokenCode.has_value();
            if (tokenCode)
                seen.token = answeredWith(*tokenCode);
            EXPECT_EQ(judgeSale(seen, receipt, true), SaleVerdict::Unknown) << code;
            EXPECT_EQ(judgeSending(seen, receipt.id, true), SaleVerdict::Unknown) << code;
        }
    }
}

TEST(Verdict, OfAKnownIdIsThatOfTheEarlierTry)
{
    EXPECT_EQ(afterAnswer(answeredWith(33, "u")), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(answeredWith(33)), SaleVerdict::Existing);
    EXPECT_EQ(afterAnswer(answeredWith(33, "u"), done()), SaleVerdict::Registered);
    EXPECT_EQ(afterSending(answeredWith(33, "u"), false), SaleVerdict::Accepted);
    EXPECT_EQ(afterSending(answeredWith(33), false), SaleVerdict::Unknown);
}

TEST(Verdict, OfAReceiptInProgressHasToBeAsked)
{
    EXPECT_EQ(afterAnswer(answeredWith(34, "u")), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(answeredWith(34)), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(answeredWith(34, "u")), SaleVerdict::Accepted);
    EXPECT_EQ(afterSending(answeredWith(34)), SaleVerdict::Unknown);
}

TEST(Verdict, KnowsAReceiptThatWasThereBefore)
{
    WireRecord seen;
    EXPECT_FALSE(existedBefore(seen));
    for (const auto& [code, existed] :
        {std::pair{33, true}, {34, true}, {0, false}, {11, false}, {32, false}, {50, false}}) {
        seen.registration = answeredWith(code, "u");
        EXPECT_EQ(existedBefore(seen), existed) << code;
    }
    seen.registration = accepted();
    EXPECT_FALSE(existedBefore(seen));
}

TEST(Verdict, OfASentReceiptIsUnknownWhenTheAnswerNamesAnother)
{
    for (ServiceAnswer answer : {accepted("u"), answeredWith(33, "u"), answeredWith(34, "u")}) {
        answer.externalId = u"till-1"_s;
        EXPECT_EQ(afterSending(answer, false), SaleVerdict::Accepted);
        answer.externalId = u"till-2"_s;
        EXPECT_EQ(afterSending(answer, false), SaleVerdict::Unknown);
    }
}

TEST(Verdict, IsUnknownWhenTheServiceGaveNoIdentifier)
{
    EXPECT_EQ(afterAnswer(accepted(""), done(), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterSending(accepted(""), false), SaleVerdict::Unknown);
}

TEST(Verdict, OfASentReceiptNeedsAnAnswerWithoutContradiction)
{
    EXPECT_EQ(afterSending(accepted(), false), SaleVerdict::Accepted);
    for (const char* word : {"", "fail", "done", "WAIT"}) {
        ServiceAnswer answer = accepted();
        answer.status = QString::fromLatin1(word);
        EXPECT_EQ(afterSending(answer, false), SaleVerdict::Unknown) << word;
    }
    ServiceAnswer answer = accepted();
    answer.hasError = true;
    EXPECT_EQ(afterSending(answer, false), SaleVerdict::Unknown) << "an error without a code";
    EXPECT_EQ(afterAnswer(answer), SaleVerdict::Unfinished) << "its document can be asked about";
}

TEST(Verdict, FollowsTheLastStatusOfAnAcceptedReceipt)
{
    EXPECT_EQ(afterAnswer(accepted(), done(), false), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), done(), true), SaleVerdict::Registered);
    EXPECT_EQ(afterAnswer(accepted(), status("fail"), false), SaleVerdict::FailedOnce);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", 502)), SaleVerdict::FailedOnce);
    EXPECT_EQ(afterAnswer(accepted(), status("DONE"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), done(160, "u", "till-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), done(160, "u-2"), false), SaleVerdict::Unknown);
    EXPECT_EQ(afterAnswer(accepted(), status("fail", {}, "till-2"), false), SaleVerdict::Unknown);
}

TEST(Verdict, OfAnAcceptedReceiptIsAskedAgainAfterAFailureThatIsNotItsOwn)
{
    EXPECT_EQ(afterAnswer(accepted()), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(11)), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(30)), SaleVerdict::Unfinished);
    EXPECT_EQ(afterAnswer(accepted(), answeredWith(50)), SaleVerdict::Unfinished);
}

TEST(Verdict, OfARegisteredReceiptNeedsWholeEvidence)
{
    using enum SaleVerdict;
    const ServiceAnswer noPayload = [] {
        ServiceAnswer answer = done();
        answer.payload = {};
        return answer;
    }();
    const ServiceAnswer otherTotalAlone = [] {
        ServiceAnswer answer = done();
        answer.payload = {{u"total"_s, 5.0}};
        return answer;
    }();
    struct Row
    {
        ServiceAnswer answer;
        SaleVerdict fresh;
        SaleVerdict recovered;
    };
    const Row rows[] = {
        {done(), Registered, Registered},
        {done(160.004), Registered, Registered},
        {done(160.01), Incomplete, ForeignId},
        {done(5), Incomplete, ForeignId},
        {otherTotalAlone, Incomplete, ForeignId},
        {noPayload, Incomplete, Incomplete},
        {done(160, "", "till-1"), Incomplete, Incomplete},
        {done(160, "u", ""), Incomplete, Incomplete},
        {done(5, "", "till-1"), Incomplete, Incomplete},
        {done(5, "u", ""), Incomplete, Incomplete},
    };
    for (const Row& row : rows) {
        const auto place = &row - rows;
        EXPECT_EQ(afterAnswer(accepted(), row.answer, false), row.fresh) << place;
        EXPECT_EQ(afterAnswer(answeredWith(33, "u"), row.answer), row.recovered) << place;
        EXPECT_EQ(afterAnswer(answeredWith(34, "u"), row.answer), row.recovered) << place;
    }
}

DocumentState toldBy(const ServiceAnswer& answer)
{
    WireRecord seen;
    seen.registration = accepted("u");
    seen.status = answer;
    return judgeStatus(seen, receipt.id);
}

TEST(DocumentState, ToldByOneAnswer)
{
    ServiceAnswer errorWithoutCode = done();
    errorWithoutCode.hasError = true;
    ServiceAnswer failedUnderUuid = status("fail", {}, "");
    failedUnderUuid.uuid = u"u"_s;
    struct Row
    {
        ServiceAnswer answer;
        DocumentState state;
    };
    using enum DocumentState;
    const Row rows[] = {
        {{}, NoNews},
        {status("wait"), Waiting},
        {status("wait", 34), Waiting},
        {status("done", 34), Waiting},
        {status("wait", 50), NoNews},
        {done(), Registered},
        {status("done", {}, ""), Registered},
        {status("done", 50), NoNews},
        {errorWithoutCode, NoNews},
        {status("fail"), Failed},
        {answeredWith(11), NoNews},
        {status(""), Doubtful},
        {done(160, "u", "other"), Doubtful},
        {done(160, "other"), Doubtful},
        {status("fail", {}, ""), NoNews},
        {failedUnderUuid, Failed},
    };
    for (const Row& row : rows)
        EXPECT_EQ(toldBy(row.answer), row.state) << (&row - rows);
    for (const char* word : {"wait", "fail"}) {
        ServiceAnswer other = status(word);
        other.uuid = u"other"_s;
        EXPECT_EQ(toldBy(other), Doubtful) << word;
    }
}

struct Awaited
{
    DocumentState state;
    // Milliseconds of each pause.
    std::vector<int> pauses;

    bool operator==(const Awaited&) const = default;
};

Awaited awaited(std::vector<DocumentState> answers)
{
    const Patience patience{3, 2, std::chrono::milliseconds(7), std::chrono::milliseconds(0)};
    auto next = answers.begin();
    Awaited result{};
    result.state = awaitDocument([&] { return *next++; },
        [&](std::chrono::milliseconds time) { result.pauses.push_back(static_cast<int>(time.count())); },
        patience);
    EXPECT_EQ(next, answers.end());
    return result;
}

TEST(AwaitDocument, AsksUntilTheDocumentIsFinished)
{
    using enum DocumentState;
    EXPECT_EQ(awaited({Registered}), (Awaited{Registered, {}}));
    EXPECT_EQ(awaited({Waiting, Waiting, Waiting, Waiting, Registered}), (Awaited{Registered, {0, 0, 0, 0}}));
    EXPECT_EQ(awaited({Waiting, Doubtful}), (Awaited{Doubtful, {0}}));
}

TEST(AwaitDocument, GivesUpAfterThreeQuestionsWithoutNews)
{
    using enum DocumentState;
    EXPECT_EQ(awaited({NoNews, NoNews, NoNews}), (Awaited{NoNews, {0, 0}}));
    EXPECT_EQ(awaited({NoNews, NoNews, Waiting, NoNews, NoNews, Registered}),
        (Awaited{Registered, {0, 0, 0, 0, 0}}));
}

TEST(AwaitDocument, BelievesAFailureOnlyWhenEveryFurtherAnswerRepeatsIt)
{
    using enum DocumentState;
    EXPECT_EQ(awaited({Failed, Failed, Failed}), (Awaited{Failed, {7, 7}}));
    EXPECT_EQ(awaited({Waiting, Failed, Failed, Failed}), (Awaited{Failed, {0, 7, 7}}));
    EXPECT_EQ(awaited({Failed, Registered}), (Awaited{Registered, {7}}));
    EXPECT_EQ(awaited({Failed, Failed, Registered}), (Awaited{Registered, {7, 7}}));
    EXPECT_EQ(awaited({Failed, Failed, Waiting, Failed, Failed, Failed}), (Awaited{Failed, {7, 7, 0, 7, 7}}));
    EXPECT_EQ(awaited({Failed, Doubtful}), (Awaited{Doubtful, {7}}));
    EXPECT_EQ(awaited({Failed, NoNews, NoNews, NoNews}), (Awaited{NoNews, {7, 0, 0}}));
    EXPECT_EQ(awaited({Failed, Failed, NoNews, Failed, Failed, Failed}), (Awaited{Failed, {7, 7, 0, 7, 7}}));
    EXPECT_EQ(awaited({Failed, NoNews, Failed, NoNews, Failed, NoNews}), (Awaited{NoNews, {7, 0, 7, 0, 7}}));
}

TEST(Patience, AsksThreeMoreTimesOverSomeSeconds)
{
    const Patience usual;
    EXPECT_EQ(usual.repeatedFailures, 3);
    EXPECT_GE(usual.beforeRepetition, std::chrono::seconds(1));
}

} // namespace

} // namespace till
