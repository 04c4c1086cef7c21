#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"
#include "tests/e2e/tables/outcomes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;
using Call = Service::Call;

constexpr auto token = R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})";
constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";
constexpr auto known =
    R"({"uuid":"u-1","status":"wait","error":{"error_id":"e","code":33,"text":"exists","type":"system"}})";

class Outcome : public testing::TestWithParam<OutcomeRow>
{
};

Ran sellAt(const OutcomeRow& row)
{
    const Service service([&](Service::Request& request) {
        switch (request.call()) {
        case Call::Token:
            request.answer(200, token);
            return;
        case Call::Sell:
            request.answer(row.status, row.registration);
            return;
        case Call::Report:
            request.answer(200, row.report);
        }
    });
    const Shop shop(service.url());
    return shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
}

TEST_P(Outcome, IsReported)
{
    const OutcomeRow& row = GetParam();
    const Ran sold = sellAt(row);
    EXPECT_EQ(sold.columns({u"outcome"_s}), QStringList{QString::fromLatin1(row.outcome)});
    EXPECT_EQ(sold.exitCode, row.exitCode);
    EXPECT_EQ(sold.lines().value(0).contains(u"error"_s), row.exitCode != 0);
    EXPECT_EQ(sold.lines().value(0).contains(u"qr"_s), false) << "no receipt here has a date";
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(row.advice));
}

INSTANTIATE_TEST_SUITE_P(Of, Outcome, testing::ValuesIn(outcomeRows().begin(), outcomeRows().end()),
    [](const auto& of) { return of.param.name; });

// The register's own codes overlap with the service's: 12 does not mean a wrong password here.
TEST(FailedDocument, IsReportedInTheWordsOfTheRegister)
{
    const char* failed = R"({"uuid":"u-1","status":"fail","payload":null,)"
                         R"("error":{"error_id":"e","code":12,"text":"Нет бумаги","type":"driver"}})";
    for (const char* registration : {accepted, known}) {
        const Ran sold = sellAt({"", 200, registration, failed, "", 0, ""});
        EXPECT_EQ(sold.lines().value(0).value(u"error"_s).toObject(),
            (QJsonObject{{u"code"_s, 12}, {u"message"_s, u"Нет бумаги"_s}, {u"detail"_s, u"Нет бумаги"_s},
                {u"errorId"_s, u"e"_s}, {u"type"_s, u"FrWorkWithServiceException"_s}}));
        EXPECT_EQ(sold.lines().value(0).value(u"next"_s).toString(), u"new-id"_s);
        EXPECT_EQ(sold.lines().value(0).value(u"sent"_s), QJsonValue(true));
    }
}

} // namespace
