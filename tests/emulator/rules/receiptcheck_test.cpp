#include "emulator/rules/receiptcheck.h"
#include "tests/emulator/support/goodreceipt.h"

#include <gmock/gmock.h>

using namespace emulator;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

// The rules of the older revision, to the letter.
const ReceiptCheck& olderRules()
{
    constexpr Revision older = Revision::May2023;
    static const ReceiptCheck check({.revision = older, .strict = true}, listsOf(older));
    return check;
}

std::vector<std::string> wrongFields(const Json& body, const std::string& inn = {})
{
    std::vector<std::string> fields;
    for (const Violation& violation : olderRules().violationsOfReceipt(body, inn))
        fields.push_back(violation.field);
    return fields;
}

Json with(const std::string& pointer, const Json& value)
{
    return changed(goodReceipt(), pointer, value);
}

std::string letters(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += "ж";
    return text;
}

std::string bytes(std::size_t count)
{
    std::string text = "0A";
    for (std::size_t i = 1; i < count; ++i)
        text += " fF";
    return text;
}

Json items(std::size_t count)
{
    Json item = goodReceipt()["receipt"]["items"][0];
    item["sum"] = 0;
    Json all(count, item);
    if (count > 0)
        all[0]["sum"] = 150.5;
    return all;
}

Json payments(std::size_t count)
{
    Json all(count, Json{{"type", 0}, {"sum", 0}});
    if (count > 0)
        all[0]["sum"] = 150.5;
    return all;
}

struct Case
{
    std::string pointer;
    Json value;
    std::vector<std::string> fields;
};

const std::string item = "/receipt/items/0";

} // namespace

TEST(ReceiptCheck, AcceptsAGoodReceipt)
{
    EXPECT_THAT(wrongFields(goodReceipt()), IsEmpty());
}

TEST(ReceiptCheck, AcceptsLimitValues)
{
    const Case cases[] = {
        {"/external_id", letters(128), {}},
        {"/receipt/client", {{"phone", "+799900000001234567"}}, {}},
        {"/receipt/client", {{"phone", "12345678901234567"}, {"email", ""}}, {}},
        {"/receipt/client/phone", "", {}},
        {"/receipt/company/inn", "770000000012", {}},
        {"/receipt/company/sno", "absent", {}},
        {"/receipt/company/payment_address", letters(256), {}},
        {"/receipt/items", items(100), {}},
        {item + "/name", letters(128), {}},
        {item + "/price", 0, {}},
        {item + "/price", 42949672.95, {}},
        {item + "/price", 0.1 + 0.2, {}},
        {item + "/quantity", 0.001, {}},
        {item + "/quantity", 99999.999, {}},
        {item + "/sum", 151.49, {}},
        {item + "/sum", 149.51, {}},
        {item + "/vat/type", "none", {}},
        {item + "/vat/type", "vat120", {}},
        {item + "/nomenclature_code", bytes(32), {}},
        {item + "/supplier_info", {{"phones", {"+79990000000"}}}, {}},
        {item + "/agent_info", nullptr, {}},
        {item + "/supplier_info", nullptr, {}},
        {item + "/payment_method", nullptr, {}},
        {"/receipt/company/sno", nullptr, {}},
        {"/receipt/client/phone", nullptr, {}},
        {"/receipt/vats", nullptr, {}},
        {"/receipt/vats", Json::array(), {}},
        {"/receipt/vats", Json::array({{{"type", "vat10"}, {"sum", nullptr}}, {{"type", "none"}}}), {}},
        {"/receipt/payments", payments(10), {}},
        {"/receipt/payments/0/type", 9, {}},
        {"/receipt/total", 150.5000000001, {}},
    };
    for (const Case& row : cases)
        EXPECT_THAT(wrongFields(with(row.pointer, row.value)), IsEmpty()) << row.pointer << " " << row.value;
}

TEST(ReceiptCheck, NamesTheWrongField)
{
    const std::string item0 = "receipt.items[0]";
    const Case cases[] = {
        {"/timestamp", "absent", {"timestamp"}},
        {"/timestamp", "2026-03-01 10:00:00", {"timestamp"}},
        {"/timestamp", 5, {"timestamp"}},
        {"/external_id", "absent", {"external_id"}},
        {"/external_id", "", {"external_id"}},
        {"/external_id", letters(129), {"external_id"}},
        {"/external_id", 17, {"external_id"}},
        {"/receipt", "absent", {"receipt"}},
        {"/receipt", Json::array(), {"receipt"}},
        {"/receipt/client", "absent", {"receipt.client"}},
        {"/receipt/client", Json::object(), {"receipt.client"}},
        {"/receipt/client", {{"email", ""}, {"phone", ""}}, {"receipt.client"}},
        {"/receipt/client/email", letters(65), {"receipt.client.email"}},
        {"/receipt/client/phone", "+7999000000012345678", {"receipt.client.phone"}},
        {"/receipt/client/phone", "123456789012345678", {"receipt.client.phone"}},
        {"/receipt/client/phone", "8 (999) 000-00-00", {"receipt.client.phone"}},
        {"/receipt/client/phone", "+", {"receipt.client.phone"}},
        {"/receipt/company", "absent", {"receipt.company"}},
        {"/receipt/company/email", "absent", {"receipt.company.email"}},
        {"/receipt/company/email", "", {"receipt.company.email"}},
        {"/receipt/company/email", letters(65), {"receipt.company.email"}},
        {"/receipt/company/inn", "absent", {"receipt.company.inn"}},
        {"/receipt/company/inn", "77000000001", {"receipt.company.inn"}},
        {"/receipt/company/inn", "77000000ab", {"receipt.company.inn"}},
        {"/receipt/company/inn", 7700000000, {"receipt.company.inn"}},
        {"/receipt/company/sno", "simple", {"receipt.company.sno"}},
        {"/receipt/company/payment_address", "absent", {"receipt.company.payment_address"}},
        {"/receipt/company/payment_address", letters(257), {"receipt.company.payment_address"}},
        {"/receipt/items", "absent", {"receipt.items"}},
        {"/receipt/items", items(0), {"receipt.items", "receipt.total"}},
        {"/receipt/items", items(101), {"receipt.items"}},
        {"/receipt/items/0", 5, {item0}},
        {item + "/name", "absent", {item0 + ".name"}},
        {item + "/name", "", {item0 + ".name"}},
        {item + "/name", letters(129), {item0 + ".name"}},
        {item + "/price", "absent", {item0 + ".price"}},
        {item + "/price", "75.25", {item0 + ".price"}},
        {item + "/price", -0.01, {item0 + ".price"}},
        {item + "/price", 42949672.96, {item0 + ".price"}},
        {item + "/price", 33.333, {item0 + ".price"}},
        {item + "/quantity", "absent", {item0 + ".quantity"}},
        {item + "/quantity", 0, {item0 + ".quantity"}},
        {item + "/quantity", 100000, {item0 + ".quantity"}},
        {item + "/quantity", 0.0005, {item0 + ".quantity"}},
        {item + "/sum", "absent", {item0 + ".sum"}},
        {item + "/sum", -1, {item0 + ".sum", "receipt.total"}},
        {item + "/sum", 150.505, {item0 + ".sum"}},
        {item + "/sum", 151.50, {"receipt.total"}},
        {item + "/sum", 149.50, {"receipt.total"}},
        {item + "/payment_method", "cash", {item0 + ".payment_method"}},
        {item + "/payment_object", "milk", {item0 + ".payment_object"}},
        {item + "/vat", "absent", {item0 + ".vat"}},
        {item + "/vat", nullptr, {item0 + ".vat"}},
        {item + "/vat", Json::object(), {item0 + ".vat.type"}},
        {item + "/vat/type", "vat18", {item0 + ".vat.type"}},
        {item + "/vat/type", "vat118", {item0 + ".vat.type"}},
        {item + "/nomenclature_code", "", {item0 + ".nomenclature_code"}},
        {item + "/nomenclature_code", "0A0B", {item0 + ".nomenclature_code"}},
        {item + "/nomenclature_code", "0A GG", {item0 + ".nomenclature_code"}},
        {item + "/nomenclature_code", bytes(33), {item0 + ".nomenclature_code"}},
        {item + "/agent_info", {{"type", "attorney"}}, {item0 + ".supplier_info"}},
        {item + "/supplier_info", {{"phones", {""}}}, {item0 + ".supplier_info.phones[0]"}},
        {"/receipt/client", nullptr, {"receipt.client"}},
        {"/receipt/client/email", nullptr, {"receipt.client"}},
        {"/receipt/company/inn", nullptr, {"receipt.company.inn"}},
        {"/receipt/vats", Json::object(), {"receipt.vats"}},
        {"/receipt/vats", Json::array({nullptr}), {"receipt.vats[0]"}},
        {"/receipt/vats", Json::array({{{"sum", 1}}}), {"receipt.vats[0].type"}},
        {"/receipt/vats", Json::array({{{"type", "vat20"}}, {{"type", "vat18"}}}), {"receipt.vats[1].type"}},
        {"/receipt/vats", Json::array({{{"type", "vat20"}, {"sum", 0.125}}}), {"receipt.vats[0].sum"}},
        {"/receipt/payments", "absent", {"receipt.payments"}},
        {"/receipt/payments", payments(0), {"receipt.payments", "receipt.total"}},
        {"/receipt/payments", payments(11), {"receipt.payments"}},
        {"/receipt/payments/0/type", 10, {"receipt.payments[0].type"}},
        {"/receipt/payments/0/type", 1.5, {"receipt.payments[0].type"}},
        {"/receipt/payments/0/sum", "absent", {"receipt.payments[0].sum"}},
        {"/receipt/total", "absent", {"receipt.total"}},
        {"/receipt/total", 150.51, {"receipt.total"}},
    };
    for (const Case& row : cases)
        EXPECT_THAT(wrongFields(with(row.pointer, row.value)), ElementsAreArray(row.fields))
            << row.pointer << " " << row.value;
}

TEST(ReceiptCheck, NamesEveryWrongFieldAtOnce)
{
    Json body = goodReceipt();
    body.erase("timestamp");
    body["receipt"]["company"]["inn"] = "1";
    body["receipt"]["items"].push_back({{"name", ""}, {"price", 1}, {"quantity", 1}, {"sum", 0}});
    EXPECT_THAT(wrongFields(body),
        ElementsAre("timestamp", "receipt.company.inn", "receipt.items[1].name", "receipt.items[1].vat"));
}

TEST(ReceiptCheck, RequiresAKnownAgentTypeAndASupplier)
{
    Json body = with(item + "/supplier_info", {{"phones", {"+79990000000"}}});
    body["receipt"]["items"][0]["agent_info"]["type"] = "commission_agent";
    EXPECT_THAT(wrongFields(body), IsEmpty());
    body["receipt"]["items"][0]["agent_info"]["type"] = "";
    EXPECT_THAT(wrongFields(body), ElementsAre("receipt.items[0].agent_info.type"));
    body["receipt"]["items"][0]["supplier_info"] = nullptr;
    EXPECT_THAT(
        wrongFields(body), ElementsAre("receipt.items[0].agent_info.type", "receipt.items[0].supplier_info"));
}

TEST(ReceiptCheck, AcceptsVatOfTheReceiptInsteadOfThatOfItsItems)
{
    Json body = with(item + "/vat", "absent");
    body["receipt"]["vats"] = Json::array({{{"type", "vat10"}, {"sum", 13.68}}});
    EXPECT_THAT(wrongFields(body), IsEmpty());
    for (const Json& noVats : {Json(nullptr), Json::array()}) {
        body["receipt"]["vats"] = noVats;
        EXPECT_THAT(wrongFields(body), ElementsAre("receipt.items[0].vat"));
    }
}

TEST(ReceiptCheck, RequiresTheTaxpayerNumberOfTheGroup)
{
    EXPECT_THAT(wrongFields(goodReceipt(), "7700000000"), IsEmpty());
    EXPECT_THAT(wrongFields(goodReceipt(), "7700000001"), ElementsAre("receipt.company.inn"));
}

TEST(ReceiptCheck, SurvivesABodyThatIsNotAnObject)
{
    EXPECT_THAT(wrongFields(Json::array()), IsEmpty());
    EXPECT_THAT(wrongFields(Json::object()), ElementsAre("timestamp", "external_id", "receipt"));
}

TEST(ReceiptCheck, ChecksNoMoreElementsThanPermitted)
{
    const auto lastOf = [](const std::string& pointer, std::size_t count) {
        return wrongFields(with(pointer, Json(count, Json::object()))).back();
    };
    EXPECT_EQ(wrongFields(with("/receipt/payments", Json(20'000, nullptr))).size(), 11u);
    EXPECT_EQ(lastOf("/receipt/payments", 20'000), "receipt.payments[9].sum");
    EXPECT_EQ(lastOf("/receipt/items", 20'000), "receipt.items[99].vat");
    EXPECT_EQ(lastOf("/receipt/vats", 20'000), "receipt.vats[99].type");
    EXPECT_EQ(wrongFields(with(item + "/supplier_info", {{"phones", Json(20'000, 5)}})).back(),
        "receipt.items[0].supplier_info.phones[99]");
}

TEST(CorrectionCheck, ChecksEnvelopeCompanyAndPayments)
{
    const Json good =
        Json::parse(R"({"timestamp": "01.03.2026 03:00:00", "external_id": "c-1", "correction": {
        "company": {"sno": "osn", "inn": "7700000000", "payment_address": "shop.example"},
        "payments": [{"type": 1, "sum": 10}]}})");
    EXPECT_THAT(olderRules().violationsOfCorrection(good, {}), IsEmpty());
    EXPECT_EQ(
        describe(olderRules().violationsOfCorrection(goodReceipt(), {})), "PropertyRequired: #/correction");
}
