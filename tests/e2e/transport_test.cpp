#include "tests/e2e/support/shop.h"
#include "tests/support/authority.h"
#include "tests/support/rawserver.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const QStringList outcome{QStringLiteral("id"), QStringLiteral("outcome")};

Ran sell(const Shop& shop)
{
    return shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
}

TEST(Transport, TrustsTheFileOfAuthoritiesBesideTheConfiguration)
{
    const Authority authority;
    const QTemporaryDir folder;
    const QString certificate = folder.filePath(QStringLiteral("server.pem"));
    const QString key = folder.filePath(QStringLiteral("server.key"));
    authority.write({}, certificate.toStdString(), key.toStdString());
    const EmulatorProcess emulator(
        {QStringLiteral("--tls-cert"), certificate, QStringLiteral("--tls-key"), key});
    Shop shop(QString(emulator.url()).replace(QStringLiteral("127.0.0.1"), QStringLiteral("localhost")));

    const Ran distrusted = sell(shop);
    EXPECT_EQ(distrusted.exitCode, 4);
    EXPECT_THAT(distrusted.err.toStdString(), HasSubstr("сертификат сервера не принят"));

    QFile trusted(QString::fromStdString(authority.caFile()));
    ASSERT_TRUE(trusted.open(QIODevice::ReadOnly));
    std::ignore = shop.file(QStringLiteral("ca.pem"), trusted.readAll());
    shop.configureTransport(QStringLiteral("caFile"), QStringLiteral("ca.pem"));
    const Ran sold = sell(shop);
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns(outcome), QStringList{QStringLiteral("r1 registered")});
}

TEST(Transport, SaysWhoItIs)
{
    const EmulatorProcess emulator;
    Shop shop(emulator.url());
    shop.configureTransport(QStringLiteral("userAgent"), QStringLiteral("till-7/1.2 (shop)"));
    EXPECT_EQ(sell(shop).exitCode, 0);
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell report"));
    EXPECT_EQ(emulator.requests().count(QStringLiteral("\r\nUser-Agent: till-7/1.2 (shop)\r\n")), 3);
}

TEST(Transport, GoesThroughTheProxyWhosePasswordNobodyReads)
{
    const RawServer proxy([](Peer& peer, const std::string& request) {
        if (request.starts_with("GET "))
            peer.answer(200, R"({"uuid":"u","external_id":"r1","status":"done","payload":{"total":160.0}})");
        else
            peer.answer(200, R"({"token":"t","uuid":"u","status":"wait","error":null})");
    });
    Shop shop(QStringLiteral("http://service.invalid/possystem/v4/"));
    QString address = QString::fromStdString(proxy.url());
    shop.configureTransport(
        QStringLiteral("proxy"), address.replace(QStringLiteral("//"), QStringLiteral("//till:canary@")));
    const Ran sold = shop.frhost({QStringLiteral("--log-level"), QStringLiteral("debug"),
        QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
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

// A row of the table: a limit in milliseconds, what the emulator does to the sale, and what the log says
// then.
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
    EXPECT_EQ(ran.columns(outcome), QStringList{QStringLiteral("r1 unknown")});
    EXPECT_THAT(ran.err.toStdString(), HasSubstr(row.cause));
}

INSTANTIATE_TEST_SUITE_P(
    Of, Limit, testing::ValuesIn(rows), [](const auto& of) { return std::string(of.param.name); });

// Connected, and then no word of TLS: that belongs to the connection.
TEST(ConnectionLimit, IsThatOfTheConfiguration)
{
    const RawServer silent([](Peer&, const std::string&) {});
    Shop shop(QStringLiteral("https://127.0.0.1:%1/possystem/v4/").arg(silent.port()));
    shop.configureTransport(QStringLiteral("connectTimeout"), QStringLiteral("300"));
    const Ran ran = sell(shop);
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("истекло время на соединение (предел 300 мс)"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Nothing was sent."));
}

} // namespace
