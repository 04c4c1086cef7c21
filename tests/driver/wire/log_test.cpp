#include "host/log/log4qt.h"
#include "host/log/secrets.h"
#include "host/transport/restclient.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/wire/rawserver.h"

#include <QRegularExpression>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;

namespace secrets = hostruntime::secrets;

class Log : public testing::Test
{
protected:
    Log() { secrets::clear(); }
    ~Log() override { secrets::clear(); }

    // Everything logged since the last call, with N for the durations.
    QStringList take()
    {
        static const QRegularExpression duration(u"\\d+ мс"_s);
        return log.take().replaceInStrings(duration, u"N мс"_s);
    }

    LogCapture log;
};

TEST_F(Log, HasOneLinePerExchangeAndItsMaskedBodiesAtDebug)
{
    const RawServer server([](Peer& peer, const std::string& request) {
        if (request.find("getToken") != std::string::npos)
            peer.answer(200, R"({"token":"canary-token-0123456789","error":null})");
        else
            peer.answer(200, R"({"uuid":"U","status":"done",
                "note":"canary-token-0123456789 canary\"pass\/word canary%22pass%2Fword"})");
    });
    WireClient client(server.url() + "/v4/");
    client.run(Operation::Token);
    EXPECT_EQ(take(),
        QStringList({u"debug: Получение токена"_s,
            uR"(debug: Атол.Онлайн: запрос POST /v4/getToken: {"login":"canary-login","pass":"***"})"_s,
            uR"(debug: Атол.Онлайн: ответ на POST /v4/getToken: {"token":"***","error":null})"_s,
            u"info: Атол.Онлайн: POST /v4/getToken: HTTP 200, 48 байт, N мс"_s}));
    client.run(Operation::Report);
    EXPECT_EQ(take(), QStringList({u"info: Получение статуса документа по uuid: U"_s,
                          uR"(debug: Атол.Онлайн: ответ на GET /v4/g/report/U: {"uuid":"U","status":"done", )"
                          uR"(                "note":"*** *** ***"})"_s,
                          u"info: Атол.Онлайн: GET /v4/g/report/U: HTTP 200, 118 байт, N мс"_s}));
}

TEST_F(Log, ShowsTheBuyersContactAtDebugOnly)
{
    const RawServer server([](Peer& peer, const std::string&) {
        peer.answer(
            400, R"({"error":{"code":32,"error_id":"e","text":"client.email canary@buyer.example"}})");
    });
    WireClient client(server.url() + "/v4/");
    client.run(Operation::Sell);
    const QStringList lines = take();
    EXPECT_TRUE(lines.first().startsWith(u"debug: Атол.Онлайн: запрос POST /v4/g/sell: "_s));
    EXPECT_TRUE(lines.first().contains(QString::fromUtf8(canaryContact)));
    EXPECT_EQ(lines.last(),
        u"error: Ответ от сервера содержит ошибку. Код 32, идентификатор e (client.email ***)"_s);
    for (const QString& line : lines)
        EXPECT_TRUE(line.startsWith(u"debug: "_s) || !line.contains(QString::fromUtf8(canaryContact)))
            << line.toStdString();
}

TEST_F(Log, MasksTheTokenInATruncatedReply)
{
    const RawServer server([](Peer& peer, const std::string&) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n"
                  R"({"token" : "canary-token-0123456789","error)");
        peer.close();
    });
    WireClient client(server.url() + "/v4/");
    client.run(Operation::Token);
    const QString all = take().join(u'\n');
    EXPECT_TRUE(all.contains(uR"(debug: Атол.Онлайн: ответ на POST /v4/getToken: {"token" : "***","error)"_s))
        << all.toStdString();
    EXPECT_FALSE(all.contains(u"canary-token"_s)) << all.toStdString();
}

TEST_F(Log, TruncatesALongBodyWithoutSplittingASecret)
{
    const std::string edge(16 * 1024 - 19, 'x');
    const RawServer server([&](Peer& peer, const std::string&) {
        peer.answer(200, R"({"a":")" + edge + R"(canary-token-0123456789"})");
    });
    RestClient client;
    client.setLogger(Log4Qt::LogManager::logger(u"frdriver"_s, u"log"_s));
    EXPECT_TRUE(client.get(
        QUrl(QString::fromStdString(server.url())), {}, {{u"Token"_s, QString::fromUtf8(canaryToken)}}));
    const QString body = take().first();
    EXPECT_TRUE(body.endsWith(u"xxx***\"}"_s)) << body.right(50).toStdString();
    secrets::clear();
    EXPECT_TRUE(client.get(QUrl(QString::fromStdString(server.url())), {}, {}));
    EXPECT_TRUE(take().first().endsWith(u"canary-token-…"_s));
}

// A server must not be able to forge a line of the log.
TEST_F(Log, ShowsABodyInOneLine)
{
    const RawServer server(
        [](Peer& peer, const std::string&) { peer.answer(200, "{\"a\":1,\r\n\"b\":2}\n\x1b[2J"); });
    RestClient client;
    client.setLogger(Log4Qt::LogManager::logger(u"frdriver"_s, u"log"_s));
    EXPECT_FALSE(client.get(QUrl(QString::fromStdString(server.url())), {}, {}));
    EXPECT_TRUE(take().first().endsWith(u"{\"a\":1,  \"b\":2}  [2J"_s));
}

} // namespace
