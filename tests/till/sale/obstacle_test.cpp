#include "till/sale/obstacle.h"

#include "host/transport/restclient.h"
#include "host/transport/transportoptions.h"
#include "tests/support/wire/rawserver.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using hostruntime::TransportOptions;
using Wanted = Authority::Wanted;

// What is said of a failed request, with these options.
QString causeOf(const QString& url, const TransportOptions& options = {})
{
    TransportOptions::setDefaults(options);
    RestClient client;
    TransportOptions::setDefaults({});
    EXPECT_FALSE(client.get(QUrl(url), {}, {}));
    return till::obstacleIn(client.failure()).cause;
}

TEST(Obstacle, OfACertificateIsNamed)
{
    const Authority authority;
    TransportOptions trusting;
    trusting.caFile = QString::fromStdString(authority.caFile());
    const auto causeWith = [&](const Wanted& wanted, const TransportOptions& options) {
        const RawServer server([](Peer&, const std::string&) {}, authority.server(wanted));
        return causeOf(QString::fromStdString(server.url()), options).toStdString();
    };
    const std::string stranger = "the certificate is signed by an authority that this machine does not trust";
    EXPECT_EQ(causeWith({.notBefore = 3600, .notAfter = 7200}, trusting), "the certificate is not yet valid");
    EXPECT_EQ(causeWith({.notBefore = -7200, .notAfter = -60}, trusting), "the certificate has expired");
    EXPECT_EQ(causeWith({.host = "other.example"}, trusting), "the certificate is for another name");
    EXPECT_EQ(causeWith({.signer = Wanted::Signer::Itself}, trusting), stranger);
    EXPECT_EQ(causeWith({}, {}), stranger);
    trusting.caFile = u"/nonexistent/ca.pem"_s;
    EXPECT_EQ(causeWith({}, trusting), "the file of authorities cannot be read");
}

TEST(Obstacle, OfTheWayThereIsNamed)
{
    EXPECT_EQ(causeOf(u"http://127.0.0.1:1/"_s), u"nobody accepts connections there"_s);
    EXPECT_EQ(causeOf(u"service.example/v4/"_s), u"the address does not begin with https://"_s);
    TransportOptions viaNowhere;
    viaNowhere.proxy = u"http://a..b:1"_s;
    EXPECT_EQ(causeOf(u"http://127.0.0.1:1/"_s, viaNowhere), u"the name of the proxy is not known"_s);
    const auto causeAfter = [](int status, const char* body) {
        const RawServer server([&](Peer& peer, const std::string&) { peer.answer(status, body); });
        return causeOf(QString::fromStdString(server.url()));
    };
    EXPECT_EQ(causeAfter(404, "<html>"), u"the service is not at this address"_s);
    EXPECT_EQ(causeAfter(502, "<html>"), u"the server is in trouble"_s);
    EXPECT_EQ(causeAfter(200, "<html>"), u"something else than the service answers there"_s);
    EXPECT_EQ(causeAfter(200, ""), u"something else than the service answers there"_s);
}

TEST(Obstacle, ThatIsNotKnownKeepsItsWords)
{
    EXPECT_EQ(till::obstacleIn(u"обмен не удался: x"_s).cause, u"обмен не удался: x"_s);
}

} // namespace
