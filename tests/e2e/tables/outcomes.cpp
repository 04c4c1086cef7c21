#include "tests/e2e/tables/outcomes.h"

namespace {

constexpr auto accepted = R"({"uuid":"u-1","status":"wait","error":null})";
constexpr auto known =
    R"({"uuid":"u-1","status":"wait","error":{"error_id":"e","code":33,"text":"exists","type":"system"}})";
constexpr auto done =
    R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":160.0,
    "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";
constexpr auto invalid = R"({"status":"fail","error":{"error_id":"e","code":32,"text":"t","type":"system"}})";

constexpr auto safe = "Running the same file again is safe";
constexpr auto newId = "Give the sale a new id and run it again";
constexpr auto correct = "Correct the receipt and run it again under the same id";
constexpr auto correctGroup = "Correct groupCode";

const OutcomeRow rows[] = {
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

} // namespace

std::span<const OutcomeRow> outcomeRows()
{
    return rows;
}
