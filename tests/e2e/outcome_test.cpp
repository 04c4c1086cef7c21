#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"

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
constexpr auto done =
    R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":160.0,
    "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";
constexpr auto invalid = R"({"status":"fail","error":{"error_id":"e","code":32,"text":"t","type":"system"}})";

// A row of the table: how the service answers the receipt and then every status request, and what frhost
// reports.
struct Row
{
    const char* name;
    int status;
    const char* registration;
    const char* report;
    const char* outcome;
    int exitCode;
    const char* advice;
};

constexpr auto safe = "Running the same file again is safe";
constexpr auto newId = "Give the sale a new id and run it again";
constexpr auto correct = "Correct the receipt and run it again under the same id";
constexpr auto correctGroup = "Correct groupCode";

const Row rows[] = {
    {"Done", 200, accepted, done, "registered", 0, ""},
    {"DoneInAnEarlierAttempt", 400, known, done, "registered", 0, ""},
    {"Failed", 200, accepted, R"({"uuid":"u-1","status":"fail","error":null,"payload":null})", "refused", 3,
        newId},
    {"FailedInTheRegister", 200, accepted,
        R"({"uuid":"u-1","status":"fail","payload":null,"error":{"error_id":"e","code":502,"text":"бумага","type":"driver"}})",
        "refused", 3, newId},
    {"FailedInTheRegisterWithTheCodeOfAnExpiredToken", 200, accepted,
        R"({"uuid":"u-1","status":"fail","payload":null,"error":{"error_id":"e","code":11,"text":"t","type":"driver"}})",
        "refused", 3, newId},
    {"FailedInTheRegisterWithTheCodeOfAWait", 200, accepted,
        R"({"uuid":"u-1","status":"fail","payload":null,"error":{"error_id":"e","code":34,"text":"t","type":"driver"}})",
        "refused", 3, newId},
    {"FailedInAnEarlierAttempt", 400, known,
        R"({"uuid":"u-1","status":"fail","payload":null,"error":{"error_id":"e","code":11,"text":"t","type":"driver"}})",
        "refused", 3, newId},
    {"NotValid", 400, invalid, "", "refused", 3, correct},
    {"WrongGroup", 401, R"({"status":"fail","error":{"error_id":"e","code":20,"text":"t","type":"system"}})",
        "", "refused", 3, correctGroup},
    {"UnknownError", 400,
        R"({"status":"fail","error":{"error_id":"e","code":0,"text":"t","type":"unknown"}})", "", "unknown",
        4, safe},
    {"ServerError", 500, R"({"status":"fail","error":{"error_id":"e","code":50,"text":"t","type":"system"}})",
        "", "unknown", 4, safe},
    {"UnknownCode", 400,
        R"({"status":"fail","error":{"error_id":"e","code":429,"text":"t","type":"system"}})", "", "unknown",
        4, safe},
    {"AnsweredByAGateway", 502, "<html>502</html>", "", "unknown", 4, safe},
    {"WithoutUuid", 200, R"({"status":"wait","error":null})", done, "unknown", 4, safe},
    {"UnknownStatus", 200, accepted, R"({"uuid":"u-1","external_id":"r1","status":"ready","error":null})",
        "unknown", 4, safe},
    {"AnswerAboutAnotherReceipt", 200, accepted,
        R"({"uuid":"u-1","external_id":"r2","status":"done","error":null,"payload":{"total":160.0}})",
        "unknown", 4, safe},
    {"EarlierAttemptOfAnotherReceipt", 400, known,
        R"({"uuid":"u-1","external_id":"r2","status":"done","error":null,"payload":{"total":160.0}})",
        "unknown", 4, safe},
    {"CodeThatIsAText", 400, R"({"status":"fail","error":{"code":"32","text":"t","type":"system"}})", "",
        "unknown", 4, safe},
    {"CodeThatIsTrue", 400, R"({"status":"fail","error":{"code":true,"text":"t","type":"system"}})", "",
        "unknown", 4, safe},
    {"CodeWithAFraction", 400, R"({"status":"fail","error":{"code":31.6,"text":"t","type":"system"}})", "",
        "unknown", 4, safe},
    {"CodeThatWouldWrap", 400, R"({"status":"fail","error":{"code":4294967328,"text":"t","type":"system"}})",
        "", "unknown", 4, safe},
    {"AnotherTotal", 200, accepted,
        R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":5.00,
        "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":1}})",
        "incomplete", 5, "with the total 5.00 instead of 160.00"},
    {"AnotherTotalInAnEarlierAttempt", 400, known,
        R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":5.00,
        "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":1}})",
        "refused", 3, "Give it an id of its own"},
    {"NoTotalInAnEarlierAttempt", 400, known,
        R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":"160.00",
        "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":1}})",
        "incomplete", 5, "no valid payload.total"},
    {"NumberThatWouldWrap", 200, accepted,
        R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":160,
        "fn_number":"9999078900006364","fiscal_document_number":2147483649,"fiscal_document_attribute":1}})",
        "incomplete", 5, "no valid payload.fiscal_document_number"},
    {"PayloadThatIsAList", 200, accepted,
        R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":[160]})", "incomplete", 5,
        "no valid payload.total, payload.fiscal_document_number"},
    {"NoExternalId", 200, accepted,
        R"({"uuid":"u-1","status":"done","error":null,"payload":{"total":160,
        "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":1}})",
        "incomplete", 5, "no valid external_id"},
    {"AnotherUuid", 200, accepted,
        R"({"uuid":"u-2","external_id":"r1","status":"done","error":null,"payload":{"total":160,
        "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":1}})",
        "unknown", 4, safe},
    {"FailedWithoutADocument", 200, accepted, R"({"status":"fail","error":null,"payload":null})", "unknown",
        4, safe},
    {"LostByTheService", 200, accepted,
        R"({"status":"fail","error":{"error_id":"e","code":30,"text":"t","type":"system"}})", "unknown", 4,
        safe},
};

class Outcome : public testing::TestWithParam<Row>
{
};

Ran sellAt(const Row& row)
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
    const Row& row = GetParam();
    const Ran sold = sellAt(row);
    EXPECT_EQ(sold.columns({u"outcome"_s}), QStringList{QString::fromLatin1(row.outcome)});
    EXPECT_EQ(sold.exitCode, row.exitCode);
    EXPECT_EQ(sold.lines().value(0).contains(u"error"_s), row.exitCode != 0);
    EXPECT_EQ(sold.lines().value(0).contains(u"qr"_s), false) << "no receipt here has a date";
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(row.advice));
}

INSTANTIATE_TEST_SUITE_P(Of, Outcome, testing::ValuesIn(rows), [](const auto& of) { return of.param.name; });

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
