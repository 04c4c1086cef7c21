#include "host/exceptions.h"
#include "tests/support/qtprinters.h"
#include "tests/support/wire/rawserver.h"
#include "till/wire/installedtransport.h"
#include "till/wire/observingtransport.h"
#include "till/wire/recordingtransport.h"

#include <gtest/gtest.h>

#include <deque>
#include <semaphore>
#include <thread>

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
            if (left.empty()) {
                peer.close();
                return;
            }
            peer.answer(200, left.front());
            left.pop_front();
        })
    {
    }

    [[nodiscard]] QUrl url(const char* path) const
    {
        return QUrl(QString::fromStdString(server.url()) + QString::fromLatin1(path));
    }
    [[nodiscard]] std::size_t requests() const { return server.requests().size(); }

private:
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
