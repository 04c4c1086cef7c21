#include "host/transport/restclient.h"
#include "host/transport/transportoptions.h"
#include "tests/support/wire/rawserver.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

using hostruntime::TransportOptions;

constexpr auto okBody = R"({"status":"done"})";

const Authority& authority()
{
    static const Authority instance;
    return instance;
}

// How a server ends a connection from which it has read a request.
enum class Ending
{
    Close,
    Reset
};

// Every case runs over plain HTTP and over TLS.
class Once : public testing::TestWithParam<bool>
{
protected:
    Once()
    {
        TransportOptions options = before;
        options.caFile = QString::fromStdString(authority().caFile());
        TransportOptions::setDefaults(options);
        client.emplace();
    }
    ~Once() override { TransportOptions::setDefaults(before); }

    static SslContext tls() { return GetParam() ? authority().server() : SslContext(); }
    static QUrl at(const RawServer& server)
    {
        return QUrl(QString::fromStdString(server.url()) + u"/v4/g/sell"_s);
    }
    static void end(Peer& peer, Ending ending)
    {
        if (ending == Ending::Close)
            peer.close();
        else
            peer.reset();
    }

    // Posts 200 receipts and asks about each one once; returns how many of the 400 exchanges had no answer.
    int failuresOf200Receipts(const RawServer& server, const std::function<void()>& afterEach = {})
    {
        int failures = 0;
        for (int i = 0; i < 200; ++i) {
            failures += client->post(at(server), "{}", {}) ? 0 : 1;
            failures += client->get(at(server), {}, {}) ? 0 : 1;
            if (afterEach)
                afterEach();
        }
        return failures;
    }

    static int posts(const RawServer& server)
    {
        int count = 0;
        for (const std::string& request : server.requests())
            count += request.starts_with("POST ") ? 1 : 0;
        return count;
    }

    const TransportOptions before = TransportOptions::defaults();
    std::optional<RestClient> client;
};

TEST_P(Once, APostThatIsReadAndNotAnswered)
{
    for (const Ending ending : {Ending::Close, Ending::Reset}) {
        for (const qsizetype size : {2, 3'000'000}) {
            const RawServer server([&](Peer& peer, const std::string&) { end(peer, ending); }, tls());
            EXPECT_FALSE(client->post(at(server), QByteArray(size, ' '), {}));
            EXPECT_FALSE(client->getResponseData().isValid());
            ASSERT_TRUE(server.waitForClosed(server.connections()));
            EXPECT_EQ(server.requests().size(), 1U) << size;
        }
    }
}

TEST_P(Once, APostOnAConnectionThatTheServerHasKept)
{
    for (const Ending ending : {Ending::Close, Ending::Reset}) {
        for (const qsizetype size : {2, 3'000'000}) {
            // A client that has lost a kept connection uses no other for a POST.
            client.emplace();
            std::atomic<int> seen = 0;
            const RawServer server(
                [&](Peer& peer, const std::string&) {
                    if (++seen <= 2)
                        peer.answer(200, okBody);
                    else
                        end(peer, ending);
                },
                tls());
            ASSERT_TRUE(client->post(at(server), "{}", {}));
            ASSERT_TRUE(client->get(at(server), {}, {}));
            EXPECT_FALSE(client->post(at(server), QByteArray(size, ' '), {}));
            EXPECT_EQ(server.requests().size(), 3U) << size;
            EXPECT_EQ(server.connections(), 1U) << "no other is opened to repeat it";
        }
    }
}

TEST_P(Once, APostAfterOneThatWasLostOnAKeptConnection)
{
    for (const Ending ending : {Ending::Close, Ending::Reset}) {
        for (const qsizetype size : {2, 3'000'000}) {
            // A client that has lost a kept connection uses no other for a POST.
            client.emplace();
            std::atomic<int> seen = 0;
            const RawServer server(
                [&](Peer& peer, const std::string&) {
                    if (++seen == 3)
                        end(peer, ending);
                    else
                        peer.answer(200, okBody);
                },
                tls());
            ASSERT_TRUE(client->post(at(server), "{}", {}));
            ASSERT_TRUE(client->get(at(server), {}, {}));
            ASSERT_FALSE(client->post(at(server), QByteArray(size, ' '), {}));
            EXPECT_TRUE(client->post(at(server), QByteArray(size, ' '), {})) << size;
            const std::size_t opened = server.connections();
            EXPECT_TRUE(client->get(at(server), {}, {}));
            EXPECT_EQ(server.connections(), opened) << "connections are kept again";
            EXPECT_EQ(server.requests().size(), 5U) << size;
        }
    }
}

TEST_P(Once, AGetOnABrokenKeptConnectionIsRepeatedOnANewOne)
{
    const QJsonDocument body(QJsonObject{{u"a"_s, 1}});
    for (const Ending ending : {Ending::Close, Ending::Reset}) {
        for (const QJsonDocument& asked : {QJsonDocument(), body}) {
            std::atomic<int> seen = 0;
            const RawServer server(
                [&](Peer& peer, const std::string&) {
                    if (++seen == 2)
                        end(peer, ending);
                    else
                        peer.answer(200, okBody);
                },
                tls());
            ASSERT_TRUE(client->post(at(server), "{}", {}));
            EXPECT_TRUE(client->get(at(server), asked, {}));
            EXPECT_EQ(server.requests().size(), 3U);
        }
    }
}

TEST_P(Once, AGetIsRepeatedNoMoreThanOnce)
{
    std::atomic<int> seen = 0;
    const RawServer server(
        [&](Peer& peer, const std::string&) {
            if (++seen == 1)
                peer.answer(200, okBody);
            else
                peer.close();
        },
        tls());
    ASSERT_TRUE(client->post(at(server), "{}", {}));
    EXPECT_FALSE(client->get(at(server), {}, {}));
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST_P(Once, SellsToAServerThatClosesAfterEachAnswer)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answerAndClose(200, okBody); }, tls());
    EXPECT_EQ(failuresOf200Receipts(server), 0);
    EXPECT_EQ(posts(server), 200);
}

TEST_P(Once, SellsToAServerThatAnnouncesThatItCloses)
{
    const RawServer server(
        [](Peer& peer, const std::string&) { peer.answerAndClose(200, okBody, "Connection: close\r\n"); },
        tls());
    EXPECT_EQ(failuresOf200Receipts(server), 0);
    EXPECT_EQ(posts(server), 200);
}

TEST_P(Once, SellsToAServerThatClosesAfterEverySecondAnswer)
{
    std::atomic<int> answered = 0;
    const RawServer server(
        [&](Peer& peer, const std::string&) {
            if (++answered % 2 == 0)
                peer.answerAndClose(200, okBody);
            else
                peer.answer(200, okBody);
        },
        tls());
    EXPECT_EQ(failuresOf200Receipts(server), 0);
    EXPECT_EQ(posts(server), 200);
}

// The server closes the connection while the till is idle; the till finds out only when it checks.
TEST_P(Once, SellsToAServerThatClosesAnIdleConnection)
{
    const RawServer server(
        [](Peer& peer, const std::string& request) {
            peer.answer(200, okBody);
            if (request.starts_with("GET "))
                peer.close();
        },
        tls());
    EXPECT_EQ(
        failuresOf200Receipts(server, [&] { ASSERT_TRUE(server.waitForClosed(server.connections())); }), 0);
    EXPECT_EQ(server.requests().size(), 400U);
}

INSTANTIATE_TEST_SUITE_P(
    Wire, Once, testing::Bool(), [](const auto& run) { return std::string(run.param ? "Tls" : "Plain"); });

} // namespace
