#include "host/transport/restclient.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/wire/rawserver.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <vector>

namespace {

using namespace Qt::Literals::StringLiterals;
using hostruntime::TransportOptions;
using Wanted = Authority::Wanted;

constexpr auto reply = R"({"token":"canary-token-0123456789","uuid":"U","status":"done"})";
constexpr auto noConnection = "FrWorkWithServiceException: Нет связи с ФР";

struct Refused
{
    const char* name;
    Wanted server;
    const char* cause;
};

const std::vector<Refused>& refused()
{
    constexpr auto certificate = "сертификат сервера не принят";
    static const std::vector<Refused> table{
        {"expired", {.notBefore = -7200, .notAfter = -60}, certificate},
        {"not yet valid", {.notBefore = 3600, .notAfter = 7200}, certificate},
        {"wrong host", {.host = "other.example"}, certificate},
        {"a name with the same beginning", {.host = "localhost.example"}, certificate},
        {"self-signed", {.signer = Wanted::Signer::Itself}, certificate},
        {"missing intermediate", {.signer = Wanted::Signer::Intermediate, .showIntermediate = false},
            certificate},
        {"TLS 1.1 only", {.maxVersion = TLS1_1_VERSION}, "TLS не согласован"},
        {"TLS 1.0 only", {.maxVersion = TLS1_VERSION}, "TLS не согласован"},
    };
    return table;
}

class Tls : public testing::Test
{
protected:
    // Nothing of use to a stranger has reached the server, and the client knows that nothing was sent.
    void expectRefusal(const RawServer& server, const std::string& baseAddress, const char* cause)
    {
        WireClient client(baseAddress);
        for (const Operation operation : {Operation::Token, Operation::Sell, Operation::Report}) {
            log.take();
            EXPECT_EQ(client.run(operation), QString::fromUtf8(noConnection));
            const QStringList lines = transportLines(log.lines());
            ASSERT_EQ(lines.size(), 1);
            EXPECT_TRUE(lines.first().contains(QString::fromUtf8(cause))) << lines.first().toStdString();
            EXPECT_TRUE(lines.first().endsWith(u"запрос не отправлен)"_s)) << lines.first().toStdString();
        }
        ASSERT_TRUE(server.waitForClosed(3));
        EXPECT_EQ(server.connections(), 3U);
        EXPECT_EQ(server.requests().size(), 0U);
        expectNoSecret(server.everything());
    }

    static void expectNoSecret(const std::string& bytes)
    {
        for (const char* secret : {canaryLogin, "canary", "pass", "token", canaryContact, "POST", "getToken"})
            EXPECT_EQ(bytes.find(secret), std::string::npos) << secret;
    }

    static void answer(Peer& peer, const std::string&) { peer.answer(200, reply); }

    LogCapture log;
    const Defaults defaults{trusting()};
};

class TlsRefusal : public Tls, public testing::WithParamInterface<std::size_t>
{
};

TEST_P(TlsRefusal, SendsNothing)
{
    const Refused& row = refused()[GetParam()];
    const RawServer server(&answer, authority().server(row.server));
    expectRefusal(server, server.url() + "/v4/", row.cause);
    EXPECT_EQ(server.everything(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Matrix, TlsRefusal, testing::Range<std::size_t>(0, refused().size()), [](const auto& run) {
        std::string name = refused()[run.param].name;
        for (char& c : name) {
            if (!std::isalnum(static_cast<unsigned char>(c)))
                c = '_';
        }
        return name;
    });

TEST_F(Tls, RefusesAnUntrustedAuthority)
{
    const Authority stranger;
    const RawServer server(&answer, stranger.server());
    expectRefusal(server, server.url() + "/v4/", "сертификат сервера не принят");
}

TEST_F(Tls, DoesNotTrustTheTestsAuthorityByDefault)
{
    const Defaults system{TransportOptions()};
    const RawServer server(&answer, authority().server());
    expectRefusal(server, server.url() + "/v4/", "сертификат сервера не принят");
}

TEST_F(Tls, RefusesAnAddressThatIsNotInTheCertificate)
{
    const RawServer server(&answer, authority().server());
    expectRefusal(server, "https://127.0.0.1:" + std::to_string(server.port()) + "/v4/",
        "сертификат сервера не принят");
}

TEST_F(Tls, RefusesPlainHttpInsteadOfHttps)
{
    const RawServer server([](Peer& peer, const std::string&) { peer.answer(200, reply); });
    // The server mistakes the TLS greeting for the beginning of a request and waits for the rest.
    TransportOptions options = trusting();
    options.connect = std::chrono::milliseconds(500);
    const Defaults impatient(options);
    WireClient client("https://127.0.0.1:" + std::to_string(server.port()) + "/v4/");
    EXPECT_EQ(client.run(Operation::Token), QString::fromUtf8(noConnection));
    EXPECT_TRUE(
        transportLines(log.lines()).join(u'\n').contains(u"истекло время на соединение (предел 500 мс)"_s))
        << log.lines().join(u'\n').toStdString();
    ASSERT_TRUE(server.waitForClosed(1));
    EXPECT_FALSE(server.everything().empty());
    expectNoSecret(server.everything());
}

TEST_F(Tls, RefusesAnUnreadableFileOfAuthorities)
{
    TransportOptions options;
    options.caFile = u"/nonexistent/ca.pem"_s;
    const Defaults broken(options);
    const RawServer server(&answer, authority().server());
    expectRefusal(server, server.url() + "/v4/", "файл сертификатов не читается");
}

TEST_F(Tls, AcceptsCertificatesOfTheGivenAuthority)
{
    const std::vector<Wanted> good{
        {},
        {.signer = Wanted::Signer::Intermediate},
        {.maxVersion = TLS1_2_VERSION},
        {.maxVersion = TLS1_3_VERSION},
    };
    for (const Wanted& wanted : good) {
        const RawServer server(&answer, authority().server(wanted));
        WireClient client(server.url() + "/v4/");
        for (const Operation operation : {Operation::Token, Operation::Sell, Operation::Report})
            EXPECT_EQ(client.run(operation), u"returned"_s) << wanted.maxVersion;
        EXPECT_EQ(server.requests().size(), 3U);
    }
}

TEST_F(Tls, KeepsTheServersCertificateWhereItIsAskedTo)
{
    const RawServer server(&answer, authority().server({.notAfter = 86400}));
    const QUrl url(QString::fromStdString(server.url()) + u"/v4/"_s);
    EXPECT_FALSE([&] {
        RestClient client;
        EXPECT_TRUE(client.get(url, {}, {}));
        EXPECT_EQ(client.failure(), QString());
        return client.certificate().has_value();
    }());
    TransportOptions options = trusting();
    options.keepCertificate = true;
    const Defaults keeping(options);
    RestClient client;
    EXPECT_FALSE(client.certificate());
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(client.get(url, {}, {}));
        ASSERT_TRUE(client.certificate());
        EXPECT_TRUE(client.certificate()->subject.contains(u"localhost"_s));
        const qint64 left = QDateTime::currentDateTimeUtc().secsTo(client.certificate()->expires);
        EXPECT_LE(std::abs(left - 86400), 60) << left;
    }
    EXPECT_FALSE(client.get(QUrl(u"https://127.0.0.1:1/"_s), {}, {}));
    EXPECT_TRUE(client.failure().startsWith(u"соединение не установлено"_s))
        << client.failure().toStdString();
}

// The server with TLS 1.1 serves a client that asks for it, so the refusals above are the client's.
TEST_F(Tls, OldServerOfTheMatrixWorks)
{
    const RawServer server(&answer, authority().server({.maxVersion = TLS1_1_VERSION}));
    const std::string command =
        "echo | openssl s_client -tls1_1 -cipher DEFAULT:@SECLEVEL=0 -connect localhost:" +
        std::to_string(server.port()) + " 2>/dev/null | grep -q 'Protocol  : TLSv1.1'";
    EXPECT_EQ(std::system(command.c_str()), 0);
}

} // namespace
