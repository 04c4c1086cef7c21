#include "host/records/fiscaldocument.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/sleeplessdriver.h"
#include "tests/support/wire/rawserver.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

using namespace Qt::Literals::StringLiterals;

struct Number
{
    const char* written;
    // As text, as a double, and in the raw answer when it is written again.
    const char* text;
    double value;
    const char* rewritten;
};

class Numbers : public testing::TestWithParam<Number>
{
};

TEST_P(Numbers, ReachTheHostUnchanged)
{
    const auto [written, text, value, rewritten] = GetParam();
    const RawServer server([&](Peer& peer, const std::string& request) {
        if (request.starts_with("POST "))
            peer.answer(200, R"({"uuid":"U"})");
        else
            peer.answer(200, R"({"payload":{"fiscal_document_attribute":)" + std::string(written) +
                                 R"(,"total":)" + written + R"(},"status":"done"})");
    });
    AtolOnlineSettings settings;
    settings.setUrl(QString::fromStdString(server.url()) + u"/v4/"_s);
    SleeplessDriver driver(&settings);
    driver.checkOpen(FiscalDocument());
    driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s));
    driver.checkClose(FiscalDocument());
    EXPECT_EQ(driver.getFiscalInfo(0, true).fiscalSign, QString::fromLatin1(text));
    EXPECT_EQ(driver.getFiscalInfo(0, true).total, value);
    EXPECT_EQ(QJsonDocument(driver.getLastResponse()).toJson(QJsonDocument::Compact),
        R"({"payload":{"fiscal_document_attribute":)" + QByteArray(rewritten) + R"(,"total":)" + rewritten +
            R"(},"status":"done"})");
}

INSTANTIATE_TEST_SUITE_P(Table, Numbers,
    testing::Values(Number{"3449555941", "3449555941", 3449555941.0, "3449555941"},
        Number{"9007199254740993", "9007199254740993", 9007199254740992.0, "9007199254740993"},
        Number{"9223372036854775807", "9223372036854775807", 9223372036854775808.0, "9223372036854775807"},
        Number{
            "-9223372036854775808", "-9223372036854775808", -9223372036854775808.0, "-9223372036854775808"},
        Number{"0.1", "0.1", 0.1, "0.1"}, Number{"1e3", "1000", 1000.0, "1000"},
        Number{"42949672.95", "42949672.95", 42949672.95, "42949672.95"},
        Number{"1030.00", "1030", 1030.0, "1030"}));

} // namespace
