#include "host/log/log4qt.h"
#include "host/transport/restclient.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/wire/rawserver.h"

#include <QUrl>

#include <curl/curl.h>
#include <dlfcn.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstring>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;
using hostruntime::TransportOptions;

constexpr auto unknownName = "unknown.invalid";

// A name server that answers only when it is told to.
struct SlowLookup
{
    std::mutex guard;
    std::condition_variable changed;
    bool answers = false;
    int waiting = 0;
} slowLookup;

constexpr auto slowName = "slow.invalid";

// A name that the name server forgets.
constexpr auto forgottenName = "forgotten.invalid";
std::atomic<bool> isForgotten = false;

} // namespace

// Found before the C library's by everything in this process.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(
    const char* name, const char* service, const addrinfo* hints, addrinfo** result)
{
    if (name && std::strcmp(name, slowName) == 0) {
        std::unique_lock lock(slowLookup.guard);
        ++slowLookup.waiting;
        slowLookup.changed.notify_all();
        slowLookup.changed.wait(lock, [] { return slowLookup.answers; });
        --slowLookup.waiting;
        slowLookup.changed.notify_all();
        return EAI_NONAME;
    }
    if (name && std::strcmp(name, unknownName) == 0)
        return EAI_NONAME;
    using Function = decltype(&::getaddrinfo);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    if (name && std::strcmp(name, forgottenName) == 0)
        return isForgotten ? EAI_NONAME : real("127.0.0.1", service, hints, result);
    return real(name, service, hints, result);
}

// Every name is looked up whenever it is needed, as after the minute for which the library remembers it.
extern "C" __attribute__((visibility("default"))) CURL* curl_easy_init()
{
    using Function = decltype(&::curl_easy_init);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "curl_easy_init"));
    CURL* handle = real();
    curl_easy_setopt(handle, CURLOPT_DNS_CACHE_TIMEOUT, 0L);
    return handle;
}

namespace {

class Limits : public testing::Test
{
protected:
    // Runs every operation against the address; each must fail for this cause with nothing sent.
    void expectNothingSent(const std::string& baseAddress, const QString& cause)
    {
        WireClient client(baseAddress);
        for (const Operation operation : {Operation::Token, Operation::Sell, Operation::Report}) {
            log.take();
            EXPECT_EQ(client.run(operation), u"FrWorkWithServiceException: Нет связи с ФР"_s);
            const QStringList lines = transportLines(log.lines());
            ASSERT_EQ(lines.size(), 1);
            EXPECT_TRUE(lines.first().startsWith(
                u"error: Атол.Онлайн: нет ответа на "_s + requestOf(operation) + u": "_s + cause))
                << lines.first().toStdString();
            EXPECT_TRUE(lines.first().endsWith(u"запрос не отправлен)"_s)) << lines.first().toStdString();
        }
    }

    LogCapture log;
};

TEST_F(Limits, RefusedConnectionSendsNothing)
{
    std::string gone;
    {
        const RawServer server([](Peer&, const std::string&) {});
        gone = server.url() + "/v4/";
    }
    expectNothingSent(gone, u"соединение не установлено: "_s);
}

TEST_F(Limits, UnknownNameSendsNothing)
{
    expectNothingSent(std::string("http://") + unknownName + "/v4/", u"имя сервера не найдено: "_s);
}

TEST_F(Limits, UnknownNameAfterALostPostDoesNotMakeItUnsent)
{
    const RawServer server([](Peer& peer, const std::string&) {
        if (isForgotten)
            peer.reset();
        else
            peer.answer(200, R"({"a":1})");
    });
    const QUrl url(u"http://%1:%2/"_s.arg(QString::fromLatin1(forgottenName)).arg(server.port()));
    RestClient client;
    ASSERT_TRUE(client.post(url, "{}", {}));
    ASSERT_TRUE(client.post(url, "{}", {}));
    isForgotten = true;
    EXPECT_FALSE(client.post(url, "{}", {}));
    isForgotten = false;
    EXPECT_EQ(client.failure(), u"соединение оборвано, запрос не повторён"_s);
    EXPECT_TRUE(client.wasSent());
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST_F(Limits, AddressWithoutASchemeSendsNothing)
{
    expectNothingSent("/v4/", u"адрес не http и не https"_s);
}

TEST_F(Limits, ConnectLimitEndsASilentNameLookup)
{
    TransportOptions options;
    options.connect = 300ms;
    {
        const Defaults defaults(options);
        expectNothingSent(
            std::string("http://") + slowName + "/v4/", u"истекло время на соединение (предел 300 мс)"_s);
    }
    // The abandoned look-ups still run; they must end before the test does.
    std::unique_lock lock(slowLookup.guard);
    slowLookup.answers = true;
    slowLookup.changed.notify_all();
    slowLookup.changed.wait(lock, [] { return slowLookup.waiting == 0; });
    slowLookup.answers = false;
}

TEST_F(Limits, ConnectLimitEndsASilentTlsHandshake)
{
    const RawServer silent([](Peer& peer, const std::string&) { peer.hang(); });
    TransportOptions options;
    options.connect = 300ms;
    const Defaults defaults(options);
    expectNothingSent("https://127.0.0.1:" + std::to_string(silent.port()) + "/v4/",
        u"истекло время на соединение (предел 300 мс)"_s);
    ASSERT_TRUE(silent.waitForClosed(3));
    EXPECT_EQ(silent.everything().find("canary"), std::string::npos);
}

// A server that reads nothing by itself: connections wait in its queue.
class Listener
{
public:
    Listener()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(descriptor, generic, size), 0);
        EXPECT_EQ(::listen(descriptor, 1), 0);
        EXPECT_EQ(::getsockname(descriptor, generic, &size), 0);
        port = ntohs(address.sin_port);
    }
    ~Listener() { ::close(descriptor); }
    Q_DISABLE_COPY_MOVE(Listener)

    [[nodiscard]] QUrl url() const { return QUrl(u"http://127.0.0.1:%1/"_s.arg(port)); }

    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);

private:
    int port = 0;
};

constexpr qsizetype moreThanBuffersHold = 64 * 1024 * 1024;

TEST_F(Limits, StallLimitEndsAnUploadThatNobodyReads)
{
    const Listener listener;
    TransportOptions options;
    options.stall = 300ms;
    const Defaults defaults(options);
    RestClient client;
    client.setLogger(Log4Qt::LogManager::logger(u"frdriver"_s, u"limits"_s));
    EXPECT_FALSE(client.post(listener.url(), QByteArray(moreThanBuffersHold, ' '), {}));
    EXPECT_TRUE(log.lines().last().contains(u"истекло время на отправку (предел 300 мс)"_s))
        << log.lines().last().toStdString();
}

// Reads the body in sixteen parts, with pauses that together are far longer than the limit.
void readSlowlyAndAnswer(int listener)
{
    const int peer = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    std::vector<char> part(moreThanBuffersHold / 16);
    for (int i = 0; i < 16; ++i) {
        std::this_thread::sleep_for(125ms);
        EXPECT_EQ(::recv(peer, part.data(), part.size(), MSG_WAITALL), std::ssize(part));
    }
    constexpr std::string_view answer =
        "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 7\r\n\r\n{\"a\":1}";
    EXPECT_EQ(::send(peer, answer.data(), answer.size(), MSG_NOSIGNAL), std::ssize(answer));
    while (::recv(peer, part.data(), part.size(), 0) > 0) {
    }
    ::close(peer);
}

TEST_F(Limits, StallLimitSparesAnUploadThatIsReadSlowly)
{
    const Listener listener;
    TransportOptions options;
    options.stall = 1s;
    const Defaults defaults(options);
    RestClient client;
    const auto reader = std::async(std::launch::async, readSlowlyAndAnswer, listener.descriptor);
    EXPECT_TRUE(client.post(listener.url(), QByteArray(moreThanBuffersHold, ' '), {}))
        << client.failure().toStdString();
}

TEST_F(Limits, LimitOutsideItsRangeBecomesTheNearestInside)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.hang(); });
    TransportOptions options;
    options.firstByte = -5s;
    options.overall = std::chrono::milliseconds::max();
    const Defaults defaults(options);
    WireClient client(server.url() + "/v4/");
    EXPECT_EQ(client.run(Operation::Token), u"FrWorkWithServiceException: Нет связи с ФР"_s);
    EXPECT_TRUE(
        transportLines(log.lines()).join(u'\n').contains(u"истекло время на начало ответа (предел 1 мс)"_s))
        << log.lines().join(u'\n').toStdString();
}

TEST_F(Limits, ClientKeepsTheOptionsItWasCreatedWith)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, R"({"a":1})"); });
    TransportOptions options;
    options.userAgent = u"till/7"_s;
    std::optional<RestClient> client;
    {
        const Defaults defaults(options);
        client.emplace();
    }
    EXPECT_TRUE(client->get(QUrl(QString::fromStdString(server.url())), {}, {}));
    EXPECT_TRUE(RestClient().get(QUrl(QString::fromStdString(server.url())), {}, {}));
    EXPECT_NE(server.requests().at(0).find("\r\nUser-Agent: till/7\r\n"), std::string::npos);
    EXPECT_NE(server.requests().at(1).find("\r\nUser-Agent: frdriver/1.0\r\n"), std::string::npos);
}

} // namespace
