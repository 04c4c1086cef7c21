#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"
#include "tests/support/wire/authority.h"
#include "tests/support/wire/rawserver.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const QStringList outcome{u"id"_s, u"outcome"_s};

Ran sell(const Shop& shop)
{
    return shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
}

TEST(Transport, TrustsTheAuthoritiesInAFileNextToTheConfiguration)
{
    const Authority authority;
    const QTemporaryDir folder;
    const QString certificate = folder.filePath(u"server.pem"_s);
    const QString key = folder.filePath(u"server.key"_s);
    authority.write({}, certificate.toStdString(), key.toStdString());
    const EmulatorProcess emulator({u"--tls-cert"_s, certificate, u"--tls-key"_s, key});
    Shop shop(QString(emulator.url()).replace(u"127.0.0.1"_s, u"localhost"_s));

    const Ran distrusted = sell(shop);
    EXPECT_EQ(distrusted.exitCode, 4);
    EXPECT_THAT(distrusted.err.toStdString(), HasSubstr("сертификат сервера не принят"));

    QFile trusted(QString::fromStdString(authority.caFile()));
    ASSERT_TRUE(trusted.open(QIODevice::ReadOnly));
    std::ignore = shop.file(u"ca.pem"_s, trusted.readAll());
    shop.configureTransport(u"caFile"_s, u"ca.pem"_s);
    const Ran sold = sell(shop);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(outcome), QStringList{u"r1 registered"_s});
}

TEST(Transport, SendsTheConfiguredUserAgent)
{
    const EmulatorProcess emulator;
    Shop shop(emulator.url());
    shop.configureTransport(u"userAgent"_s, u"till-7/1.2 (shop)"_s);
    EXPECT_EQ(sell(shop).exitCode, 0);
    EXPECT_EQ(emulator.calls(), u"token sell report"_s);
    EXPECT_EQ(emulator.requests().count(u"\r\nUser-Agent: till-7/1.2 (shop)\r\n"_s), 3);
}

TEST(Transport, UsesTheProxyWithoutShowingItsPassword)
{
    const RawServer proxy([](Peer& peer, const std::string& request) {
        if (request.starts_with("GET "))
            peer.answer(200, R"({"uuid":"u","external_id":"r1","status":"done","payload":{"total":160.0,
                "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})");
        else
            peer.answer(200, R"({"token":"t","uuid":"u","status":"wait","error":null})");
    });
    Shop shop(u"http://service.invalid/possystem/v4/"_s);
    QString address = QString::fromStdString(proxy.url());
    shop.configureTransport(u"proxy"_s, address.replace(u"//"_s, u"//till:canary@"_s));
    const Ran sold = shop.frhost({u"--log-level"_s, u"debug"_s, u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_THAT((sold.err + sold.out).toStdString(), Not(HasSubstr("canary")));
    std::vector<std::string> lines;
    for (const std::string& request : proxy.requests()) {
        lines.push_back(request.substr(0, request.find("\r\n")));
        EXPECT_THAT(request, HasSubstr("\r\nProxy-Authorization: Basic "));
    }
    EXPECT_THAT(lines, testing::ElementsAre("POST http://service.invalid/possystem/v4/getToken HTTP/1.1",
                           "POST http://service.invalid/possystem/v4/shop_1/sell HTTP/1.1",
                           "GET http://service.invalid/possystem/v4/shop_1/report/u HTTP/1.1"));
}

// A row of the table: a limit in milliseconds, what the emulator does to the sale, and what is then logged.
struct Row
{
    const char* name;
    const char* key;
    const char* limit;
    const char* fault;
    const char* cause;
};

const Row rows[] = {
    {"FirstByte", "firstByteTimeout", "1500", R"("effect":"silent")",
        "истекло время на начало ответа (предел 1500 мс)"},
    {"Stall", "stallTimeout", "1500", R"("effect":"wrong-length","bytes":16)",
        "истекло время на продолжение ответа (предел 1500 мс)"},
    {"Overall", "overallTimeout", "1500", R"("effect":"drip","milliseconds":100)",
        "истекло время на обмен в целом (предел 1500 мс)"},
};

class Limit : public testing::TestWithParam<Row>
{
};

TEST_P(Limit, IsThatOfTheConfiguration)
{
    const Row& row = GetParam();
    const EmulatorProcess emulator;
    emulator.addFault(QByteArray(R"("endpoint":"sell",)") + row.fault);
    Shop shop(emulator.url());
    shop.configureTransport(QString::fromLatin1(row.key), QString::fromLatin1(row.limit));
    const Ran ran = sell(shop);
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.columns(outcome), QStringList{u"r1 unknown"_s});
    EXPECT_THAT(ran.err.toStdString(), HasSubstr(row.cause));
}

INSTANTIATE_TEST_SUITE_P(
    Of, Limit, testing::ValuesIn(rows), [](const auto& of) { return std::string(of.param.name); });

// Silence in the TLS handshake counts as connecting.
TEST(ConnectionLimit, IsThatOfTheConfiguration)
{
    const RawServer silent([](Peer&, const std::string&) {});
    Shop shop(u"https://127.0.0.1:%1/possystem/v4/"_s.arg(silent.port()));
    shop.configureTransport(u"connectTimeout"_s, u"300"_s);
    const Ran ran = sell(shop);
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("истекло время на соединение (предел 300 мс)"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("No receipt was sent."));
}

} // namespace
