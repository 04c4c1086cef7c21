#include "host/restclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/rawserver.h"

#include <QJsonObject>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

constexpr auto okBody = R"({"status":"done"})";

class Client : public testing::Test
{
protected:
    Client()
    {
        client.setLogger(Log4Qt::LogManager::logger(QStringLiteral("frdriver"), QStringLiteral("test")));
        client.setTargetAlias(QStringLiteral("Атол.Онлайн"));
    }

    static QUrl at(const RawServer& server, const char* path = "/possystem/v4/g/sell")
    {
        return QUrl(QString::fromStdString(server.url()) + QString::fromLatin1(path));
    }

    // The one log line of a failed exchange without its duration, which varies.
    QString failure() const
    {
        const QStringList lines = log.lines();
        if (lines.size() != 1)
            return QStringLiteral("%1 lines").arg(lines.size());
        return lines.first().section(QStringLiteral(" ("), 0, -2);
    }

    LogCapture log;
    RestClient client;
};

TEST_F(Client, SendsVerbAddressHeadersAndBodyAsGiven)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_TRUE(client.post(at(server, "/v4/g/sell?x=%D0%B0"), R"({"a":1})",
        {{QStringLiteral("Content-type"), QStringLiteral("application/json; charset=utf-8")},
            {QStringLiteral("token"), QString()}}));
    const std::string request = server.requests().at(0);
    EXPECT_EQ(request.substr(0, request.find("\r\n")), "POST /v4/g/sell?x=%D0%B0 HTTP/1.1");
    EXPECT_NE(request.find("\r\nContent-type: application/json; charset=utf-8\r\n"), std::string::npos)
        << request;
    EXPECT_NE(request.find("\r\ntoken:\r\n"), std::string::npos) << request;
    EXPECT_EQ(request.find("Expect:"), std::string::npos) << request;
    EXPECT_EQ(request.substr(request.find("\r\n\r\n") + 4), R"({"a":1})");
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(Client, GetsWithoutABodyAndWithOneWhenGiven)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_TRUE(client.get(at(server, "/report/u"), {}, {}));
    EXPECT_TRUE(
        client.get(at(server, "/report/u"), QJsonDocument(QJsonObject{{QStringLiteral("a"), 1}}), {}));
    const auto requests = server.requests();
    EXPECT_EQ(requests.at(0).substr(0, requests.at(0).find("\r\n")), "GET /report/u HTTP/1.1");
    EXPECT_EQ(requests.at(0).find("Content-Length"), std::string::npos);
    EXPECT_EQ(requests.at(1).substr(0, requests.at(1).find("\r\n")), "GET /report/u HTTP/1.1");
    EXPECT_EQ(requests.at(1).substr(requests.at(1).find("\r\n\r\n") + 4), R"({"a":1})");
}

TEST_F(Client, ParsesTheBodyWhateverTheStatusAndKeepsIntegersExact)
{
    for (const int status : {200, 400, 401, 403, 404, 415, 500, 502}) {
        const RawServer server([status](Peer& peer, const std::string&) {
            peer.answer(status, R"({"error":{"code":33},"n":3449555941,"big":9007199254740993})");
        });
        EXPECT_TRUE(client.post(at(server), "{}", {}));
        const QVariantMap reply = client.getResponseData().toMap();
        EXPECT_EQ(reply.value(QStringLiteral("n")).toString(), QStringLiteral("3449555941"));
        EXPECT_EQ(reply.value(QStringLiteral("big")).toString(), QStringLiteral("9007199254740993"));
        EXPECT_EQ(reply.value(QStringLiteral("error")).toMap().value(QStringLiteral("code")).toInt(), 33)
            << status;
    }
}

TEST_F(Client, KeepsTheConnectionBetweenRequests)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_TRUE(client.get(at(server), {}, {}));
    EXPECT_EQ(server.requests().size(), 4U);
    EXPECT_EQ(server.connections(), 1U);
}

TEST_F(Client, PutsAPostOnTheWireOnceWhenTheServerReadsItAndCloses)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.close(); });
    EXPECT_FALSE(client.post(at(server), "{}", {}));
    EXPECT_FALSE(client.getResponseData().isValid());
    EXPECT_TRUE(server.waitForClosed(server.connections()));
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_TRUE(
        failure().startsWith(QStringLiteral("error: Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: ")))
        << log.lines().join(u'\n').toStdString();
}

TEST_F(Client, PutsAPostOnTheWireOnceWhenAKeptConnectionBreaks)
{
    for (const bool reset : {false, true}) {
        for (const std::size_t size : {std::size_t(2), std::size_t(3'000'000)}) {
            std::atomic<int> seen = 0;
            const RawServer server([&](Peer& peer, const std::string&) {
                if (++seen == 1)
                    peer.answer(200, okBody);
                else if (reset)
                    peer.reset();
                else
                    peer.close();
            });
            RestClient kept;
            ASSERT_TRUE(kept.post(at(server), "{}", {}));
            EXPECT_FALSE(kept.post(at(server), QByteArray(static_cast<qsizetype>(size), ' '), {}));
            EXPECT_TRUE(server.waitForClosed(server.connections()));
            EXPECT_EQ(server.requests().size(), 2U) << "reset " << reset << ", body of " << size;
        }
    }
}

TEST_F(Client, NoticesAnIdleConnectionThatTheServerClosed)
{
    const RawServer server([](Peer& peer, const std::string&) {
        peer.answer(200, okBody);
        peer.close();
    });
    for (std::size_t i = 1; i <= 20; ++i) {
        EXPECT_TRUE(client.post(at(server), "{}", {}));
        ASSERT_TRUE(server.waitForClosed(i));
    }
    EXPECT_EQ(server.requests().size(), 20U);
}

TEST_F(Client, ForgetsTheLastReplyWhenTheNextExchangeFails)
{
    QUrl gone;
    {
        const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
        gone = at(server);
        ASSERT_TRUE(client.post(gone, "{}", {}));
    }
    EXPECT_FALSE(client.post(gone, "{}", {}));
    EXPECT_FALSE(client.getResponseData().isValid());
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(Client, TakesABodyThatIsNotJsonForNoReply)
{
    const RawServer server(
        [](Peer& peer, const std::string&) { peer.answer(502, "<html>Bad gateway</html>"); });
    EXPECT_FALSE(client.post(at(server), "{}", {}));
    EXPECT_EQ(failure(), QStringLiteral("error: Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: HTTP "
                                        "502, тело не JSON: illegal value"));
}

TEST_F(Client, TakesAnEmptyBodyForNoReply)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, ""); });
    EXPECT_FALSE(client.post(at(server), "{}", {}));
    EXPECT_EQ(failure(),
        QStringLiteral("error: Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: HTTP 200, пустое тело"));
}

TEST_F(Client, LeavesTheQueryOutOfTheLog)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.close(); });
    EXPECT_FALSE(client.get(at(server, "/report/u?token=secret"), {}, {}));
    EXPECT_FALSE(log.lines().join(u'\n').contains(QStringLiteral("secret")));
}

TEST_F(Client, RefusesABodyOfOver16Mebibytes)
{
    const RawServer server([](Peer& peer, const std::string&) {
        peer.answer(200, '"' + std::string(17 * 1024 * 1024, 'x') + '"');
    });
    EXPECT_FALSE(client.post(at(server), "{}", {}));
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(Client, DoesNotFollowRedirects)
{
    const RawServer elsewhere([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    const RawServer server([&](Peer& peer, const std::string&) {
        peer.answer(301, R"({"moved":true})", "Location: " + elsewhere.url() + "/\r\n");
    });
    EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_TRUE(client.getResponseData().toMap().value(QStringLiteral("moved")).toBool());
    EXPECT_EQ(elsewhere.requests().size(), 0U);
}

TEST_F(Client, SendsNothingWhenAHeaderHoldsALineBreak)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_FALSE(client.post(at(server), "{}", {{QStringLiteral("token"), QStringLiteral("a\r\nX: y")}}));
    EXPECT_EQ(server.connections(), 0U);
    EXPECT_EQ(failure(),
        QStringLiteral(
            "error: Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: перевод строки в заголовке token"));
}

TEST_F(Client, RefusesAddressesThatAreNotHttp)
{
    EXPECT_FALSE(client.get(QUrl(QStringLiteral("file:///etc/hostname")), {}, {}));
    EXPECT_EQ(log.lines().size(), 1);
}

TEST_F(Client, WorksInAThreadWithoutAnEventLoop)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    bool replied = false;
    std::thread([&] { replied = client.post(at(server), "{}", {}); }).join();
    EXPECT_TRUE(replied);
}

} // namespace
