#include "host/log/log4qt.h"
#include "host/log/secrets.h"
#include "host/transport/keptconnection.h"
#include "host/transport/restclient.h"
#include "host/transport/transportoptions.h"
#include "tests/support/logcapture.h"
#include "tests/support/wire/rawserver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QRegularExpression>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto okBody = R"({"status":"done"})";

class Client : public testing::Test
{
protected:
    Client()
    {
        client.setLogger(Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s));
        client.setTargetAlias(u"Атол.Онлайн"_s);
    }

    static QUrl at(const RawServer& server, const char* path = "/possystem/v4/g/sell")
    {
        return QUrl(QString::fromStdString(server.url()) + QString::fromLatin1(path));
    }

    // The lines at info level and above since the last call, with "N" in place of the durations.
    QStringList takeLines()
    {
        static const QRegularExpression duration(u"\\d+ мс"_s);
        QStringList lines = log.take();
        lines.removeIf([](const QString& line) { return line.startsWith(u"debug: "_s); });
        return lines.replaceInStrings(duration, u"N мс"_s);
    }

    LogCapture log;
    RestClient client;
};

TEST_F(Client, SendsVerbAddressHeadersAndBodyAsGiven)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_TRUE(client.post(at(server, "/v4/g/sell?x=%D0%B0"), R"({"a":1})",
        {{u"Content-type"_s, u"application/json; charset=utf-8"_s}, {u"token"_s, QString()}}));
    const std::string request = server.requests().at(0);
    EXPECT_EQ(request.substr(0, request.find("\r\n")), "POST /v4/g/sell?x=%D0%B0 HTTP/1.1");
    EXPECT_NE(request.find("\r\nContent-type: application/json; charset=utf-8\r\n"), std::string::npos)
        << request;
    EXPECT_NE(request.find("\r\ntoken:\r\n"), std::string::npos) << request;
    EXPECT_EQ(request.find("Expect:"), std::string::npos) << request;
    EXPECT_EQ(request.substr(request.find("\r\n\r\n") + 4), R"({"a":1})");
    static const QRegularExpression duration(u"\\d+ мс"_s);
    EXPECT_EQ(log.take().replaceInStrings(duration, u"N мс"_s),
        QStringList({uR"(debug: Атол.Онлайн: запрос POST /v4/g/sell: {"a":1})"_s,
            uR"(debug: Атол.Онлайн: ответ на POST /v4/g/sell: {"status":"done"})"_s,
            u"info: Атол.Онлайн: POST /v4/g/sell: HTTP 200, 17 байт, N мс"_s}));
}

std::vector<std::string> linesOf(const std::string& request, const std::string& name)
{
    std::vector<std::string> lines;
    std::istringstream headers(request.substr(0, request.find("\r\n\r\n")));
    for (std::string line; std::getline(headers, line);) {
        if (QByteArray::fromStdString(line).toLower().startsWith(name + ':'))
            lines.push_back(line.substr(0, line.find('\r')));
    }
    return lines;
}

TEST_F(Client, NamesItselfAndWhatItCanReadUnlessTheCallerDoes)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_TRUE(client.get(at(server), {}, {}));
    EXPECT_TRUE(client.get(at(server), {}, {{u"user-agent"_s, u"till"_s}}));
    using Lines = std::vector<std::string>;
    EXPECT_EQ(linesOf(server.requests().at(0), "user-agent"), Lines{"User-Agent: frdriver/1.0"});
    EXPECT_EQ(linesOf(server.requests().at(0), "accept-encoding"), Lines{"Accept-Encoding: gzip"});
    EXPECT_EQ(linesOf(server.requests().at(1), "user-agent"), Lines{"user-agent: till"});
}

TEST_F(Client, KeepsTheAnswerOfAServerThatRefusesAnExpectation)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(417, okBody); });
    EXPECT_TRUE(client.post(at(server), "{}", {{u"Expect"_s, u"100-continue"_s}}));
    EXPECT_EQ(client.getResponseData().toMap().value(u"status"_s).toString(), u"done"_s);
    EXPECT_EQ(server.requests().size(), 1U);
}

// The flags of the descriptors that are connected to the port.
std::vector<int> flagsOfConnectionsTo(int port)
{
    std::vector<int> flags;
    for (const QString& name : QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System)) {
        bool isNumber = false;
        const int descriptor = name.toInt(&isNumber);
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (isNumber && getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
            ntohs(peer.sin_port) == port)
            flags.push_back(fcntl(descriptor, F_GETFD));
    }
    return flags;
}

TEST_F(Client, LeavesNoConnectionToAProgramThatTheHostStarts)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    ASSERT_TRUE(client.get(at(server), {}, {}));
    EXPECT_EQ(flagsOfConnectionsTo(server.port()), std::vector<int>{FD_CLOEXEC});
}

std::string targetOf(const std::string& request)
{
    return request.substr(0, request.find(" HTTP/1.1"));
}

TEST_F(Client, LeavesThePathOfAnAddressAlone)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    for (const char* path : {"/a/../v4/./sell", "/v4/..", "/../x", "/a//b/", "/x%2Fy", "/./"})
        EXPECT_TRUE(client.post(at(server, path), "{}", {}));
    EXPECT_TRUE(client.get(at(server, "/g/report/../u?x=../y"), {}, {}));
    std::vector<std::string> targets;
    for (const std::string& request : server.requests())
        targets.push_back(targetOf(request));
    EXPECT_EQ(targets, (std::vector<std::string>{"POST /a/../v4/./sell", "POST /v4/..", "POST /../x",
                           "POST /a//b/", "POST /x%2Fy", "POST /./", "GET /g/report/../u?x=../y"}));
}

// The caller's headers alone say who it is. Through a proxy, the address would be part of the request line.
TEST_F(Client, SendsNoUserInformationOfAnAddress)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    hostruntime::TransportOptions options;
    options.proxy = QString::fromStdString(server.url());
    hostruntime::TransportOptions::setDefaults(options);
    RestClient throughProxy;
    hostruntime::TransportOptions::setDefaults({});
    for (const char* user : {"canary-user:canary-word@", "canary-user@", ":canary-word@"}) {
        QUrl url = at(server, "/v4/getToken");
        url.setUserInfo(QString::fromLatin1(user).chopped(1), QUrl::TolerantMode);
        EXPECT_TRUE(client.post(url, "{}", {}));
        EXPECT_TRUE(client.get(url, {}, {}));
        EXPECT_TRUE(throughProxy.post(url, "{}", {}));
    }
    ASSERT_EQ(server.requests().size(), 9U);
    for (const std::string& request : server.requests()) {
        EXPECT_EQ(request.find("canary"), std::string::npos) << request;
        EXPECT_EQ(request.find("uthorization"), std::string::npos) << request;
    }
    EXPECT_FALSE(log.lines().join(u'\n').contains(u"canary"_s));
    EXPECT_TRUE(client.post(at(server), "{}", {{u"Authorization"_s, u"Bearer x"_s}}));
    EXPECT_NE(server.requests().back().find("\r\nAuthorization: Bearer x\r\n"), std::string::npos);
}

TEST_F(Client, GetsWithAndWithoutABody)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_TRUE(client.get(at(server, "/report/u"), {}, {}));
    EXPECT_TRUE(client.get(at(server, "/report/u"), QJsonDocument(QJsonObject{{u"a"_s, 1}}), {}));
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
        EXPECT_EQ(reply.value(u"n"_s).toString(), u"3449555941"_s);
        EXPECT_EQ(reply.value(u"big"_s).toString(), u"9007199254740993"_s);
        EXPECT_EQ(reply.value(u"error"_s).toMap().value(u"code"_s).toInt(), 33) << status;
    }
}

TEST_F(Client, KeepsTheConnectionBetweenExchanges)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(client.post(at(server), "{}", {}));
        EXPECT_TRUE(client.get(at(server), {}, {}));
    }
    EXPECT_EQ(server.requests().size(), 10U);
    EXPECT_EQ(server.connections(), 1U);
}

qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot).size();
}

TEST_F(Client, HoldsNoDescriptorOfAConnectionThatMayNotBeUsedAgain)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    const qsizetype before = openFiles();
    EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_GT(openFiles(), before);

    std::this_thread::sleep_for(hostruntime::KeptConnection::longestIdle);
    QElapsedTimer late;
    late.start();
    while (openFiles() > before && late.elapsed() < 3000)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(openFiles(), before);

    EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_EQ(server.connections(), 2U);
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
}

TEST_F(Client, TellsWhetherTheRequestWasSent)
{
    QUrl gone;
    {
        const RawServer server([](Peer& peer, const std::string&) { peer.close(); });
        gone = at(server);
        EXPECT_FALSE(client.post(gone, "{}", {}));
        EXPECT_TRUE(client.wasSent());
    }
    EXPECT_FALSE(client.post(gone, "{}", {}));
    EXPECT_FALSE(client.wasSent());
}

TEST_F(Client, LeavesTheQueryOutOfTheLog)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.close(); });
    EXPECT_FALSE(client.get(at(server, "/report/u?token=secret"), {}, {}));
    EXPECT_FALSE(log.lines().join(u'\n').contains(u"secret"_s));
}

TEST_F(Client, MasksWhatMayHoldASecretAndLeavesTheRestOfALine)
{
    namespace secrets = hostruntime::secrets;
    secrets::clear();
    for (const QString& word : {u"байт"_s, u"Атол.Онлайн"_s, u"отправлен"_s, u"secret"_s})
        secrets::addCredential(word);
    const std::string body = R"({"a":")" + std::string(1000, 'a') + "\"}";
    secrets::addCredential(QString::number(body.size()));
    const RawServer server([&](Peer& peer, const std::string& request) {
        if (request.starts_with("POST"))
            peer.answer(200, body);
        else
            peer.close();
    });
    EXPECT_TRUE(client.post(at(server, "/v4/secret/sell"), "{}", {}));
    EXPECT_FALSE(client.get(at(server, "/v4/secret/sell"), {}, {}));
    secrets::clear();
    const QStringList lines = takeLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.first(), u"info: Атол.Онлайн: POST /v4/***/sell: HTTP 200, 1008 байт, N мс"_s);
    EXPECT_TRUE(lines.last().startsWith(u"error: Атол.Онлайн: нет ответа на GET /v4/***/sell: "_s));
    EXPECT_TRUE(lines.last().endsWith(u" (N мс, запрос отправлен)"_s)) << lines.last().toStdString();
}

TEST_F(Client, DoesNotFollowRedirects)
{
    const RawServer elsewhere([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    const RawServer server([&](Peer& peer, const std::string&) {
        peer.answer(301, R"({"moved":true})", "Location: " + elsewhere.url() + "/\r\n");
    });
    EXPECT_TRUE(client.post(at(server), "{}", {}));
    EXPECT_TRUE(client.getResponseData().toMap().value(u"moved"_s).toBool());
    EXPECT_EQ(elsewhere.requests().size(), 0U);
}

TEST_F(Client, SendsNothingWhenAHeaderHoldsALineBreak)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    EXPECT_FALSE(client.post(at(server), "{}", {{u"token"_s, u"a\r\nX: y"_s}}));
    EXPECT_EQ(server.connections(), 0U);
    EXPECT_EQ(takeLines(),
        QStringList(u"error: Атол.Онлайн: нет ответа на POST /possystem/v4/g/sell: перевод строки в "
                    u"заголовке token (N мс, запрос не отправлен)"_s));
}

TEST_F(Client, RefusesAddressesThatAreNotHttp)
{
    for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/x", "getToken", "", "http:///x"}) {
        EXPECT_FALSE(client.get(QUrl(QString::fromLatin1(address)), {}, {}));
        const QStringList lines = takeLines();
        ASSERT_EQ(lines.size(), 1);
        EXPECT_TRUE(lines.first().endsWith(u": адрес не http и не https (N мс, запрос не отправлен)"_s))
            << lines.first().toStdString();
    }
}

TEST_F(Client, WorksInAThreadWithoutAnEventLoop)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, okBody); });
    bool replied = false;
    std::thread([&] { replied = client.post(at(server), "{}", {}); }).join();
    EXPECT_TRUE(replied);
}

} // namespace
