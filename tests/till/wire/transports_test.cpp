#include "host/exceptions.h"
#include "tests/support/qtprinters.h"
#include "tests/support/wire/rawserver.h"
#include "till/wire/installedtransport.h"
#include "till/wire/observingtransport.h"
#include "till/wire/recordingtransport.h"

#include <gtest/gtest.h>

#include <deque>
#include <mutex>
#include <optional>
#include <semaphore>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// A server that gives its answers one after the other and hangs up when none is left.
class Answers
{
public:
    explicit Answers(std::deque<std::string> bodies)
        : left(std::move(bodies))
        , server([this](Peer& peer, const std::string&) {
            if (const auto body = next())
                peer.answer(200, *body);
            else
                peer.close();
        })
    {
    }

    [[nodiscard]] QUrl url(const char* path) const
    {
        return QUrl(QString::fromStdString(server.url()) + QString::fromLatin1(path));
    }
    [[nodiscard]] std::size_t requests() const { return server.requests().size(); }

private:
    // Taken before it is sent: the next request may come on another connection, in another thread.
    std::optional<std::string> next()
    {
        const std::scoped_lock lock(guard);
        if (left.empty())
            return std::nullopt;
        std::string body = left.front();
        left.pop_front();
        return body;
    }

    std::mutex guard;
    std::deque<std::string> left;
    RawServer server;
};

TEST(ObservingTransport, NotesWhatWentOverTheWire)
{
    const Answers service({R"({"token":"t","error":null})", R"({"uuid":"u","status":"wait"})",
        R"({"status":"wait","error":{"code":34}})"});
    ObservingTransport transport;
    EXPECT_TRUE(transport.post(service.url("/v4/getToken"), "{}", {}));
    EXPECT_TRUE(transport.seen().token.arrived);
    EXPECT_FALSE(transport.seen().receiptSent);
    EXPECT_TRUE(transport.post(service.url("/v4/group/sell"), "{}", {}));
    EXPECT_TRUE(transport.seen().receiptSent);
    EXPECT_EQ(transport.seen().registration.uuid, u"u"_s);
    EXPECT_TRUE(transport.get(service.url("/v4/group/report/u"), {}, {}));
    EXPECT_EQ(transport.seen().status.errorCode, ServiceCode::DocumentInProgress);
    EXPECT_EQ(transport.seen().lastErrorCode, ServiceCode::DocumentInProgress);
    EXPECT_EQ(service.requests(), 3U);
    transport.startReceipt();
    EXPECT_FALSE(transport.seen().receiptSent);
}

TEST(ObservingTransport, KnowsThatAReceiptWithoutAConnectionWasNotSent)
{
    QUrl nobody;
    {
        const Answers gone({});
        nobody = gone.url("/v4/group/sell");
    }
    ObservingTransport transport;
    EXPECT_FALSE(transport.post(nobody, "{}", {}));
    EXPECT_FALSE(transport.seen().receiptSent);
    EXPECT_EQ(transport.seen().lastAnswered, false);
}

TEST(ObservingTransport, KnowsThatAReceiptSentOnceMayHaveArrivedWhateverComesOfTheNextTry)
{
    QUrl nobody;
    ObservingTransport transport;
    {
        const Answers service({R"({"error":{"code":11}})"});
        nobody = service.url("/v4/group/sell");
        EXPECT_TRUE(transport.post(nobody, "{}", {}));
    }
    EXPECT_FALSE(transport.post(nobody, "{}", {}));
    EXPECT_TRUE(transport.seen().receiptSent);
}

TEST(ObservingTransport, AsksItsGateBeforeEachReceipt)
{
    const Answers service({R"({"token":"t","error":null})", R"({"uuid":"u"})"});
    ObservingTransport transport;
    QList<QByteArray> asked;
    transport.setGate([&](const QUrl& url, const QByteArray& body) {
        EXPECT_EQ(url, service.url("/v4/group/sell"));
        EXPECT_EQ(service.requests(), 1U) << "nothing of the receipt is on the wire";
        asked << body;
    });
    EXPECT_TRUE(transport.post(service.url("/v4/getToken"), "{}", {}));
    EXPECT_TRUE(transport.post(service.url("/v4/group/sell"), "{1}", {}));
    EXPECT_EQ(asked, QList<QByteArray>{"{1}"});
}

TEST(ObservingTransport, SendsNothingThatItsGateKeepsBack)
{
    const Answers service({R"({"uuid":"u"})"});
    ObservingTransport transport;
    transport.setGate([](const QUrl&, const QByteArray&) { throw std::runtime_error("no"); });
    EXPECT_THROW(transport.post(service.url("/v4/group/sell"), "{}", {}), std::runtime_error);
    EXPECT_FALSE(transport.seen().receiptSent);
    EXPECT_EQ(service.requests(), 0U);
    transport.setGate({});
    EXPECT_TRUE(transport.post(service.url("/v4/group/sell"), "{}", {}));
}

// Stops just before the request is put on the wire until it is told to go on.
class StoppingTransport : public ObservingTransport
{
public:
    std::binary_semaphore arrived{0};
    std::binary_semaphore goOn{0};

protected:
    void sending() override
    {
        arrived.release();
        goOn.acquire();
        ObservingTransport::sending();
    }
};

TEST(ObservingTransport, PutsNothingOnTheWireWhileItIsHeld)
{
    const Answers service({R"({"uuid":"u"})"});
    StoppingTransport transport;
    std::thread till([&] { EXPECT_TRUE(transport.post(service.url("/v4/group/sell"), "{}", {})); });
    transport.arrived.acquire();
    {
        const auto held = transport.hold();
        transport.goOn.release();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_FALSE(transport.seen().receiptSent);
        EXPECT_EQ(service.requests(), 0U);
    }
    till.join();
    EXPECT_TRUE(transport.seen().receiptSent);
    EXPECT_EQ(service.requests(), 1U);
}

TEST(ObservingTransport, ForgetsTheEarlierAnswerWhenTheNextOneDoesNotArrive)
{
    const Answers service({R"({"error":{"code":11}})"});
    ObservingTransport transport;
    EXPECT_TRUE(transport.post(service.url("/v4/group/sell"), "{}", {}));
    EXPECT_EQ(transport.seen().lastErrorCode, ServiceCode::ExpiredToken);
    EXPECT_FALSE(transport.post(service.url("/v4/group/sell"), "{}", {}));
    EXPECT_TRUE(transport.seen().receiptSent);
    EXPECT_FALSE(transport.seen().registration.arrived);
    EXPECT_EQ(transport.seen().lastErrorCode, std::nullopt);
}

TEST(ObservingTransport, AsksNoMoreAboutADocumentThatHasFailed)
{
    const Answers service(
        {R"({"status":"fail","error":{"code":11,"type":"driver"}})", R"({"status":"done"})"});
    ObservingTransport transport;
    EXPECT_TRUE(transport.get(service.url("/v4/group/report/u"), {}, {}));
    EXPECT_THROW(transport.get(service.url("/v4/group/report/u"), {}, {}), FrWorkWithServiceException);
    EXPECT_EQ(service.requests(), 1U);
    EXPECT_TRUE(transport.seen().status.saysFailed());
}

TEST(ObservingTransport, AsksAgainAboutAFailedDocumentAfterANewQuestion)
{
    const Answers service({R"({"status":"fail","error":null})", R"({"status":"done"})"});
    ObservingTransport transport;
    EXPECT_TRUE(transport.get(service.url("/v4/group/report/u"), {}, {}));
    transport.startQuestion();
    EXPECT_FALSE(transport.seen().status.arrived);
    EXPECT_TRUE(transport.get(service.url("/v4/group/report/u"), {}, {}));
    EXPECT_EQ(transport.seen().status.status, u"done"_s);
}

TEST(ObservingTransport, WithholdsAnAnswerThatHoldsNoToken)
{
    struct Row
    {
        const char* answer;
        bool isToken;
        bool isWithheld;
    };
    const Row rows[] = {
        {R"({"token":"t"})", true, false},
        {R"({"token":"t","error":{"code":"12"}})", true, false},
        {R"({"error":{"code":12}})", false, false},
        {R"({"token":"","error":null})", false, true},
        {R"({"token":"  ","error":null})", false, true},
        {R"({"token":null,"error":null})", false, true},
        {R"({"token":1,"error":null})", false, true},
        {R"({"token":true,"error":null})", false, true},
        {R"({"token":["t"],"error":null})", false, true},
        {R"({"token":"a\nb","error":null})", false, true},
        {R"({"token":"a\u0000b","error":null})", false, true},
        {R"({"token":"a\u007fb","error":null})", false, true},
        {R"({"token":"a\u0085b","error":null})", false, true},
        {R"({"timestamp":"01.01.2026 00:00:00","error":null})", false, true},
        {R"({"error":{"code":"12"}})", false, true},
    };
    for (const Row& row : rows) {
        const Answers service({row.answer});
        ObservingTransport transport;
        EXPECT_EQ(transport.post(service.url("/v4/getToken"), "{}", {}), !row.isWithheld) << row.answer;
        EXPECT_EQ(transport.getResponseData().isValid(), !row.isWithheld) << row.answer;
        EXPECT_EQ(transport.seen().token.holdsToken, row.isToken) << row.answer;
        EXPECT_TRUE(transport.seen().token.arrived) << row.answer;
    }
}

constexpr auto newToken = R"({"token":"t","error":null})";
constexpr auto expired = R"({"error":{"code":11}})";
constexpr auto notKnown = R"({"error":{"code":10}})";

// Renews the token again and again, as a driver does, until an exchange yields nothing. Returns the number of
// requests of all kinds.
std::size_t renewWithoutEnd(ObservingTransport& transport, const char* rejection)
{
    std::deque<std::string> bodies;
    for (int i = 0; i < 100; ++i)
        bodies.insert(bodies.end(), {rejection, newToken});
    const Answers service(bodies);
    while (transport.post(service.url("/v4/g/sell"), "{}", {}) &&
           transport.post(service.url("/v4/getToken"), "{}", {})) {
    }
    EXPECT_FALSE(transport.getResponseData().isValid());
    EXPECT_EQ(transport.seen().lastAnswered, false);
    EXPECT_TRUE(transport.seen().tokensRejected);
    const std::size_t requests = service.requests();
    EXPECT_FALSE(transport.get(service.url("/v4/g/report/u"), {}, {})) << "nothing works any more";
    EXPECT_FALSE(transport.post(service.url("/v4/g/sell"), "{}", {}));
    EXPECT_EQ(service.requests(), requests);
    return requests;
}

TEST(ObservingTransport, SlowsDownAnEndlessRenewalAndEndsIt)
{
    using namespace std::chrono_literals;
    for (const char* rejection :
        {expired, notKnown, R"({"error":{"code":"11"}})", R"({"error":"expired"})"}) {
        std::vector<std::chrono::milliseconds> pauses;
        ObservingTransport transport(
            TokenRenewals({0ms, 10ms, 20ms}), [&](auto pause) { pauses.push_back(pause); });
        EXPECT_EQ(renewWithoutEnd(transport, rejection), 7U) << rejection;
        EXPECT_EQ(pauses, (std::vector{0ms, 10ms, 20ms})) << rejection;
        transport.startReceipt();
        EXPECT_FALSE(transport.seen().tokensRejected);
        EXPECT_EQ(renewWithoutEnd(transport, rejection), 7U) << "the next receipt gets a new chance";
    }
}

TEST(ObservingTransport, DoesNotCountWhatTheRegisterSaysOfAFailedDocumentAsARejectedToken)
{
    const Answers service({R"({"status":"fail","error":{"code":11,"type":"driver"}})", newToken});
    std::vector<std::chrono::milliseconds> pauses;
    ObservingTransport transport(
        TokenRenewals({std::chrono::seconds(1)}), [&](auto pause) { pauses.push_back(pause); });
    EXPECT_TRUE(transport.get(service.url("/v4/g/report/u"), {}, {}));
    EXPECT_TRUE(transport.post(service.url("/v4/getToken"), "{}", {}));
    EXPECT_EQ(pauses, std::vector{std::chrono::milliseconds(0)});
}

TEST(ObservingTransport, HasATokenThatIsNotKnownRenewedOnceInARow)
{
    const auto codeFor = [](const ObservingTransport& transport) {
        return transport.getResponseData().toMap().value(u"error"_s).toMap().value(u"code"_s).toInt();
    };
    const Answers service({notKnown, newToken, notKnown});
    ObservingTransport transport;
    EXPECT_TRUE(transport.post(service.url("/v4/g/sell"), "{}", {}));
    EXPECT_EQ(codeFor(transport), 11);
    EXPECT_EQ(transport.seen().registration.errorCode, ServiceCode::UnknownToken) << "what the service said";
    EXPECT_TRUE(transport.post(service.url("/v4/getToken"), "{}", {}));
    EXPECT_TRUE(transport.post(service.url("/v4/g/sell"), "{}", {}));
    EXPECT_EQ(codeFor(transport), 10);
}

TEST(RecordingTransport, KeepsTheReceiptAndSendsNothing)
{
    RecordingTransport transport;
    EXPECT_TRUE(transport.post(QUrl(u"getToken"_s), "{\"login\":\"x\"}", {}));
    EXPECT_EQ(transport.takeBody(), QByteArray());
    EXPECT_TRUE(transport.post(QUrl(u"/sell"_s), "{}", {}));
    EXPECT_FALSE(transport.getResponseData().toMap().value(u"uuid"_s).toString().isEmpty());
    EXPECT_EQ(transport.takeBody(), QByteArray("{}"));
    EXPECT_EQ(transport.takeBody(), QByteArray());
}

TEST(InstalledTransport, IsWhatTheFactoryGivesWhileItLives)
{
    RecordingTransport transport;
    {
        const InstalledTransport installed(transport);
        EXPECT_EQ(MockFactory<RestClient>::create().get(), &transport);
    }
    EXPECT_NE(MockFactory<RestClient>::create().get(), &transport);
}

} // namespace
