#include "till/sale/registrar.h"

#include "host/abstractfrdriver.h"
#include "tests/support/logcapture.h"
#include "tests/support/qtprinters.h"
#include "tests/support/wire/rawserver.h"
#include "till/device/loadedregister.h"
#include "till/wire/installedtransport.h"
#include "till/wire/observingtransport.h"

#include <gtest/gtest.h>

#include <deque>
#include <mutex>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// A service with scripted answers to each kind of call, the last of which it repeats. An empty answer is a
// connection that is closed without one.
class ScriptedService
{
public:
    using Answers = std::deque<std::string>;

    ScriptedService(Answers sells, Answers reports, Answers tokens)
        : answers{std::move(tokens), std::move(sells), std::move(reports)}
        , server([this](Peer& peer, const std::string& request) { answer(peer, request); })
    {
    }

    [[nodiscard]] QString url() const { return QString::fromStdString(server.url()) + u"/v4/"_s; }
    // The calls after the first one for a token.
    [[nodiscard]] QString calls() const
    {
        const std::scoped_lock lock(guard);
        return made.sliced(1).join(u' ');
    }

private:
    void answer(Peer& peer, const std::string& request)
    {
        const bool isToken = request.find("/getToken ") != std::string::npos;
        const std::size_t kind = isToken ? 0 : request.starts_with("POST") ? 1 : 2;
        const std::string text = [&] {
            const std::scoped_lock lock(guard);
            made << QStringList{u"token"_s, u"sell"_s, u"report"_s}[static_cast<qsizetype>(kind)];
            Answers& left = answers[kind];
            std::string next = left.empty() ? std::string() : left.front();
            if (left.size() > 1)
                left.pop_front();
            return next;
        }();
        if (text.empty())
            peer.close();
        else
            peer.answer(200, text);
    }

    mutable std::mutex guard;
    std::vector<Answers> answers;
    QStringList made;
    RawServer server;
};

constexpr auto token = R"({"token":"token-of-the-shop","error":null})";
constexpr auto accepted = R"({"uuid":"u","status":"wait","error":null})";
constexpr auto known = R"({"uuid":"u","status":"wait","error":{"code":33,"type":"system","text":"t"}})";
constexpr auto knownWithoutUuid = R"({"status":"wait","error":{"code":33,"type":"system","text":"t"}})";
constexpr auto inProgress = R"({"uuid":"u","status":"wait","error":{"code":34,"type":"system","text":"t"}})";
constexpr auto invalid = R"({"status":"fail","error":{"code":32,"type":"system","text":"t"}})";
constexpr auto unsupported = R"({"error":{"code":31,"type":"system","text":"t"}})";
constexpr auto wrongGroup = R"({"error":{"code":20,"type":"system","text":"t"}})";
constexpr auto serverError = R"({"error":{"code":50,"type":"system","text":"t"}})";
constexpr auto expired = R"({"error":{"code":11,"type":"system","text":"t"}})";
constexpr auto unknownToken = R"({"error":{"code":10,"type":"system","text":"t"}})";
constexpr auto badPassword = R"({"error":{"code":12,"type":"system","text":"t"}})";
constexpr auto textAsCode = R"({"error":{"code":"32","type":"system","text":"t"}})";
constexpr auto lost = "";
constexpr auto garbled = "?";
constexpr auto waiting = R"({"uuid":"u","status":"wait","error":{"code":34,"type":"system","text":"t"}})";
constexpr auto failed = R"({"uuid":"u","external_id":"r1","status":"fail","error":null,"payload":null})";
constexpr auto failedInTheRegister =
    R"({"uuid":"u","status":"fail","payload":null,"error":{"code":11,"text":"бумага","type":"driver"}})";
constexpr auto done =
    R"({"uuid":"u","external_id":"r1","status":"done","error":null,"payload":{"total":160,
        "fn_number":"0251440300046840","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";
constexpr auto doneWithTotal5 =
    R"({"uuid":"u","external_id":"r1","status":"done","error":null,"payload":{"total":5,
        "fn_number":"0251440300046840","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";
constexpr auto doneWithWrappingNumber =
    R"({"uuid":"u","external_id":"r1","status":"done","error":null,"payload":{"total":160,
        "fn_number":"0251440300046840","fiscal_document_number":2147483649,"fiscal_document_attribute":1}})";
constexpr auto doneWithoutPayload = R"({"uuid":"u","external_id":"r1","status":"done","error":null})";
constexpr auto doneOfAnother = R"({"uuid":"other","external_id":"r2","status":"done","error":null})";

struct Row
{
    const char* name;
    ScriptedService::Answers sells;
    ScriptedService::Answers reports;
    Outcome outcome;
    bool recovered;
    QString calls;
    ScriptedService::Answers tokens = {token};
};

QueuedReceipt queued()
{
    QueuedReceipt queued;
    queued.file = u"receipts"_s;
    queued.line = 1;
    Receipt& receipt = queued.receipt;
    receipt.document.setInternalIdentifier(u"r1"_s);
    receipt.requisites << FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s);
    receipt.payments << FrPayment(1, 160);
    return queued;
}

// A register of the real plugin whose waits are short.
class Till
{
public:
    explicit Till(const ScriptedService& service)
        : transport(TokenRenewals({std::chrono::milliseconds(0), std::chrono::milliseconds(0)}))
        , installed(transport)
        , fiscalRegister(pluginAt(QStringLiteral(PLUGIN_FOLDER "/libatolonline.so")))
    {
        QObject& device = fiscalRegister.device();
        device.setProperty("url", service.url());
        device.setProperty("groupCode", u"g"_s);
        device.setProperty("requestInterval", 200);
        fiscalRegister.init();
        fiscalRegister.driver().connect();
    }

    [[nodiscard]] Registrar registrar()
    {
        return {
            fiscalRegister, transport, {3, 3, std::chrono::milliseconds(1), std::chrono::milliseconds(1)}};
    }

    // As another receipt would have it.
    void forget() { transport.startReceipt(); }

private:
    LogCapture log;
    ObservingTransport transport;
    InstalledTransport installed;
    LoadedRegister fiscalRegister;
};

using Rows = std::vector<Row>;

const Rows rows = {
    {"Registered", {accepted}, {waiting, done}, Outcome::Registered, false, u"sell report report"_s},

    {"OneFailureIsNotBelieved", {accepted}, {failed, done}, Outcome::Registered, false,
        u"sell report report"_s},
    {"ThreeFailuresAreNotBelieved", {accepted}, {failed, failed, failed, done}, Outcome::Registered, false,
        u"sell report report report report"_s},
    {"AFailureThatEveryAnswerRepeatsIsBelieved", {accepted}, {failed}, Outcome::Refused, false,
        u"sell report report report report"_s},
    {"AWaitAfterAFailureStartsAgain", {accepted}, {failed, failed, waiting, failed, failed, failed, done},
        Outcome::Registered, false, u"sell report report report report report report report"_s},
    {"AFailureThatNobodyRepeatsIsUnknown", {accepted}, {failed, garbled}, Outcome::Unknown, false,
        u"sell report report report report"_s},
    {"AFailureWithTheCodeOfAnExpiredToken", {accepted}, {failedInTheRegister}, Outcome::Refused, false,
        u"sell report report token report token report token"_s},
    {"AFailureWithTheCodeOfAnExpiredTokenAndThenDone", {accepted}, {failedInTheRegister, done},
        Outcome::Registered, false, u"sell report report"_s},
    {"AFailureOfAnEarlierAttempt", {known}, {failed}, Outcome::Refused, false,
        u"sell report report report report"_s},

    {"OneRefusalIsNotBelieved", {invalid, accepted}, {done}, Outcome::Registered, false,
        u"sell sell report"_s},
    {"ARefusalAfterTheRegistrationIsRecovered", {invalid, known}, {done}, Outcome::Registered, true,
        u"sell sell report"_s},
    {"TheSameWhereTheUuidHasToBeAskedFor", {invalid, knownWithoutUuid, known}, {done}, Outcome::Registered,
        true, u"sell sell sell report"_s},
    {"TwoRefusalsAreNotBelieved", {invalid, invalid, known}, {done}, Outcome::Registered, true,
        u"sell sell sell report"_s},
    {"ARepeatedRefusalIsBelieved", {invalid}, {}, Outcome::Refused, false, u"sell sell sell"_s},
    {"ARefusalThatOnlyTheWordsOfWhichChange", {invalid, unsupported}, {}, Outcome::Refused, false,
        u"sell sell sell"_s},
    {"ARefusalThatNobodyRepeatsIsUnknown", {invalid, lost}, {}, Outcome::Unknown, false, u"sell sell"_s},
    {"ARefusalAndThenAnError", {invalid, serverError}, {}, Outcome::Unknown, false, u"sell sell"_s},
    {"ATextIsNotACode", {textAsCode}, {}, Outcome::Unknown, false, u"sell"_s},
    {"ARepeatedRefusalOfTheAccount", {wrongGroup}, {}, Outcome::Refused, false, u"sell sell sell"_s},

    {"ARecoveredReceiptCostsTwoRequests", {known}, {done}, Outcome::Registered, true, u"sell report"_s},
    {"ARecoveredReceiptWithoutUuidIsSentAgain", {knownWithoutUuid, known}, {done}, Outcome::Registered, true,
        u"sell sell report"_s},
    {"ARecoveredReceiptThatIsNeverNamed", {knownWithoutUuid}, {done}, Outcome::Unknown, false,
        u"sell sell"_s},
    {"AReceiptInProgressWasThereBefore", {inProgress}, {waiting, done}, Outcome::Registered, true,
        u"sell report report"_s},
    {"AReceiptInProgressOfAnotherSale", {inProgress}, {doneWithTotal5}, Outcome::Refused, false,
        u"sell report"_s},
    {"ARecoveredReceiptOfAnotherSale", {known}, {doneWithTotal5}, Outcome::Refused, false, u"sell report"_s},

    {"AnotherTotal", {accepted}, {doneWithTotal5}, Outcome::Incomplete, false, u"sell report"_s},
    {"ANumberThatWouldWrap", {accepted}, {doneWithWrappingNumber}, Outcome::Incomplete, false,
        u"sell report"_s},
    {"NoPayload", {accepted}, {doneWithoutPayload}, Outcome::Incomplete, false, u"sell report"_s},
    {"NoPayloadOfARecoveredReceipt", {known}, {doneWithoutPayload}, Outcome::Incomplete, true,
        u"sell report"_s},
    {"TheAnswerAboutAnotherDocument", {accepted}, {doneOfAnother}, Outcome::Unknown, false, u"sell report"_s},

    {"AnExpiredToken", {expired, accepted}, {done}, Outcome::Registered, false, u"sell token sell report"_s},
    {"ATokenThatIsNotKnown", {unknownToken, accepted}, {done}, Outcome::Registered, false,
        u"sell token sell report"_s},
    {"ATokenThatIsNeverKnown", {unknownToken}, {}, Outcome::Unknown, false, u"sell token sell"_s},
    {"ATokenThatIsNotKnownWhileWaiting", {accepted}, {unknownToken, unknownToken, done}, Outcome::Registered,
        false, u"sell report report token report"_s},
    {"ATokenThatIsAlwaysExpired", {expired}, {}, Outcome::Unknown, false, u"sell token sell token sell"_s},
    {"AnExpiredTokenAndNoAnswerToTheRequestForAnother", {expired}, {}, Outcome::Unknown, false,
        u"sell token"_s, {token, lost}},
    {"AnExpiredTokenAndARefusedLogin", {expired}, {}, Outcome::Unknown, false, u"sell token"_s,
        {token, badPassword}},
};

class OfRegistrar : public testing::TestWithParam<Row>
{
};

TEST_P(OfRegistrar, IsJudgedByEveryAnswerTogether)
{
    const Row& row = GetParam();
    const ScriptedService service(row.sells, row.reports, row.tokens);
    Till till(service);
    const ReceiptResult result = till.registrar().sell(queued());
    EXPECT_EQ(result.outcome, row.outcome);
    EXPECT_EQ(result.recovered, row.recovered);
    EXPECT_EQ(service.calls(), row.calls);
    EXPECT_EQ(result.fiscal.has_value(), row.outcome == Outcome::Registered);
    EXPECT_EQ(result.error.has_value(), row.outcome != Outcome::Registered);
}

// The same answers, while another receipt is sent between any two of them.
TEST_P(OfRegistrar, IsJudgedAlikeWithoutWaiting)
{
    const Row& row = GetParam();
    const ScriptedService service(row.sells, row.reports, row.tokens);
    Till till(service);
    Registrar registrar = till.registrar();
    auto begun = registrar.begin(queued());
    std::optional<ReceiptResult> result;
    if (auto* const atOnce = std::get_if<ReceiptResult>(&begun))
        result = *atOnce;
    while (!result) {
        till.forget();
        result = registrar.ask(std::get<AwaitedReceipt>(begun));
    }
    EXPECT_EQ(result->outcome, row.outcome);
    EXPECT_EQ(result->recovered, row.recovered);
    EXPECT_EQ(result->fiscal.has_value(), row.outcome == Outcome::Registered);
    EXPECT_EQ(result->error.has_value(), row.outcome != Outcome::Registered);
    EXPECT_EQ(result->sent, true);
}

INSTANTIATE_TEST_SUITE_P(
    Sale, OfRegistrar, testing::ValuesIn(rows), [](const auto& of) { return std::string(of.param.name); });

struct Sent
{
    const char* name;
    ScriptedService::Answers sells;
    std::optional<Outcome> outcome;
    bool recovered;
    QString calls;
};

const std::vector<Sent> sendings = {
    {"Accepted", {accepted}, {}, false, u"sell"_s},
    {"OneRefusalIsNotBelieved", {invalid, accepted}, {}, false, u"sell sell"_s},
    {"ARefusalAfterTheRegistration", {invalid, known}, {}, true, u"sell sell"_s},
    {"TwoRefusalsAreNotBelieved", {invalid, invalid, known}, {}, true, u"sell sell sell"_s},
    {"ARepeatedRefusalIsBelieved", {invalid}, Outcome::Refused, false, u"sell sell sell"_s},
    {"ARefusalThatNobodyRepeats", {invalid, lost}, Outcome::Unknown, false, u"sell sell"_s},
    {"AKnownReceipt", {known}, {}, true, u"sell"_s},
    {"AReceiptInProgress", {inProgress}, {}, true, u"sell"_s},
};

class Sending : public testing::TestWithParam<Sent>
{
};

TEST_P(Sending, IsJudgedByEveryAnswerTogether)
{
    const Sent& row = GetParam();
    const ScriptedService service(row.sells, {}, {token});
    Till till(service);
    const ReceiptResult result = till.registrar().send(queued());
    EXPECT_EQ(result.outcome, row.outcome);
    EXPECT_EQ(result.recovered, row.recovered);
    EXPECT_EQ(service.calls(), row.calls);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Sending, testing::ValuesIn(sendings), [](const auto& of) { return std::string(of.param.name); });

ReceiptResult sold(const char* registration, const char* report)
{
    const ScriptedService service({registration}, {report}, {token});
    return Till(service).registrar().sell(queued());
}

std::string withCode(int code)
{
    return R"({"status":"fail","error":{"code":)" + std::to_string(code) + R"(,"type":"system","text":"t"}})";
}

TEST(ResultOfASale, NamesWhatTheEvidenceLacks)
{
    const ReceiptResult incomplete = sold(accepted, doneWithWrappingNumber);
    ASSERT_TRUE(incomplete.error);
    EXPECT_EQ(incomplete.error->message,
        u"The service says that the receipt is registered, but its answer has no valid "
        u"payload.fiscal_document_number"_s);
    EXPECT_TRUE(incomplete.advice.contains(u"Running the same file again is safe"_s));
    EXPECT_FALSE(incomplete.endsRun);
    EXPECT_EQ(incomplete.uuid, u"u"_s);
}

TEST(ResultOfASale, SaysWhatToCorrectInTheConfiguration)
{
    const ReceiptResult refused = sold(wrongGroup, lost);
    EXPECT_TRUE(refused.advice.contains(u"Correct groupCode"_s)) << refused.advice.toStdString();
    EXPECT_TRUE(refused.endsRun);
}

TEST(ResultOfASale, SaysThatNoTokenIsAccepted)
{
    const ReceiptResult unknown = sold(expired, lost);
    ASSERT_TRUE(unknown.error);
    EXPECT_EQ(unknown.error->message, u"The service does not accept the tokens that it issues"_s);
    EXPECT_TRUE(unknown.endsRun);
}

TEST(ResultOfASale, SaysWhyThereIsNoAnswer)
{
    struct Silence
    {
        const char* registration;
        const char* report;
        const char* message;
        const char* advice;
    };
    const Silence silences[] = {
        {lost, lost, "No answer from the service: the connection broke off",
            "Check the network, and try again."},
        {garbled, lost, "No answer from the service: something else than the service answers there",
            "Check url and proxy."},
        {accepted, garbled, "No answer from the service: something else than the service answers there",
            "Check url and proxy."},
    };
    for (const auto& [registration, report, message, advice] : silences) {
        const ReceiptResult unknown = sold(registration, report);
        ASSERT_TRUE(unknown.error);
        EXPECT_EQ(unknown.error->message.toStdString(), message);
        EXPECT_TRUE(unknown.advice.contains(u"Running the same file again is safe"_s));
        EXPECT_TRUE(unknown.advice.endsWith(QString::fromLatin1(advice))) << unknown.advice.toStdString();
        EXPECT_EQ(unknown.next, NextStep::Rerun);
    }
}

TEST(ResultOfASale, DoesNotBlameAKnownIdForAnAnswerAboutAnotherDocument)
{
    const ReceiptResult unknown = sold(known, doneOfAnother);
    ASSERT_TRUE(unknown.error);
    EXPECT_EQ(
        unknown.error->message, u"The service's answer does not say whether the receipt is registered"_s);
}

TEST(ResultOfASale, SaysWhatToCorrectAfterARefusal)
{
    const std::pair<int, const char*> advices[] = {
        {1, "Nothing was registered. Run the same file again."},
        {2, "Nothing was registered. Correct inn in the configuration"},
        {31, "Nothing was registered. Correct url in the configuration"},
        {32, "Nothing was registered. Correct the receipt and run it again under the same id"},
        {40, "Nothing was registered. Check url and proxy"},
        {41, "Nothing was registered. Check proxy"},
    };
    for (const auto& [code, advice] : advices) {
        const ReceiptResult refused = sold(withCode(code).c_str(), lost);
        EXPECT_EQ(refused.outcome, Outcome::Refused) << code;
        EXPECT_TRUE(refused.advice.startsWith(QString::fromLatin1(advice))) << refused.advice.toStdString();
    }
}

TEST(ResultOfASale, DoesNotCallAnAnswerOfTheServiceNoConnection)
{
    for (const int code : {40, 41, 50}) {
        const ReceiptResult result = sold(withCode(code).c_str(), lost);
        ASSERT_TRUE(result.error);
        EXPECT_EQ(result.error->message, u"t"_s) << code;
        EXPECT_EQ(result.error->type, u"FrNoConnectionException"_s) << code;
    }
}

TEST(ReceiptThatTheDriverRefuses, IsNotSentAtAll)
{
    const ScriptedService service({accepted}, {done}, {token});
    Till till(service);
    QueuedReceipt noBuyer = queued();
    noBuyer.receipt.requisites.clear();
    EXPECT_EQ(till.registrar().sell(noBuyer).outcome, Outcome::Refused);
    EXPECT_EQ(till.registrar().send(noBuyer).outcome, Outcome::Refused);
    EXPECT_EQ(service.calls(), QString());
}

} // namespace
