#include "emulator/rules/latefailure.h"
#include "emulator/rules/receiptcheck.h"
#include "tests/emulator/support/goodreceipt.h"

#include <gmock/gmock.h>

using namespace emulator;

namespace {

constexpr Edition older{.revision = Revision::May2023};
constexpr Edition strict{.revision = Revision::December2025, .strict = true};
constexpr Edition usual{};

// What the answer says is wrong, by edition; empty where the body is accepted.
struct Answers
{
    std::string inOlder;
    std::string inStrict;
    std::string inUsual;
};

Answers refused(const std::string& wrong)
{
    return {wrong, wrong, wrong};
}

// Until a revision or a practice that is milder.
Answers refusedInOlder(const std::string& wrong)
{
    return {wrong, "", ""};
}

Answers refusedByLetter(const std::string& wrong)
{
    return {wrong, wrong, ""};
}

Answers refusedInNewer(const std::string& wrong)
{
    return {"", wrong, wrong};
}

const Answers accepted{};

struct Row
{
    const char* rule;
    // d: described by the service; r: recorded; o: told by users; ?: inferred.
    char source;
    std::string pointer;
    Json value;
    Answers answers;
};

std::string letters(std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += "ж";
    return text;
}

std::string bytes(std::size_t count)
{
    std::string text = "44";
    for (std::size_t i = 1; i < count; ++i)
        text += " 4D";
    return text;
}

// One item or payment has the whole sum, the others nothing.
Json many(const char* key, std::size_t count)
{
    Json element = goodReceipt()["receipt"][key][0];
    element["sum"] = 0;
    Json all(count, element);
    if (count > 0)
        all[0]["sum"] = 150.5;
    return all;
}

Json vats(std::size_t count)
{
    return Json(count, Json{{"type", "vat10"}});
}

Json agent(const std::string& phone)
{
    return {{"type", "paying_agent"}, {"paying_agent", {{"phones", {phone}}}}};
}

const Json supplier{{"phones", {"+79990000000"}}};
const std::string item = "/receipt/items/0";
const std::string gs1 = "010463003407001221CMK45BrhN0WLf\x1D";

const Row receiptRows[] = {
    {"timestamp of the service", 'd', "/timestamp", "01.03.2026 10:00:00", accepted},
    {"timestamp in another form", 'd', "/timestamp", "2026-03-01 10:00:00",
        refused("PatternMismatch: #/timestamp")},
    {"timestamp in ISO form with a zone", 'r', "/timestamp", "2026-03-01T10:00:00+03:00",
        refusedByLetter("PatternMismatch: #/timestamp")},
    {"external_id of 128 characters", 'd', "/external_id", letters(128), accepted},
    {"external_id of 129", 'd', "/external_id", letters(129), refused("StringTooLong: #/external_id")},
    {"an empty external_id", 'd', "/external_id", "", refused("StringTooShort: #/external_id")},

    {"no client", '?', "/receipt/client", "absent", refusedByLetter("PropertyRequired: #/receipt.client")},
    {"a client that is not an object", 'd', "/receipt/client", 5,
        refused("ObjectExpected: #/receipt.client")},
    {"neither email nor phone", 'd', "/receipt/client", {{"email", ""}, {"phone", ""}},
        refused("PropertyRequired: #/receipt.client")},
    {"client.email of 65 characters", 'd', "/receipt/client/email", letters(65),
        refused("StringTooLong: #/receipt.client.email")},
    {"a formatted client.phone", 'd', "/receipt/client/phone", "8 (999) 000-00-00",
        refusedInOlder("PatternMismatch: #/receipt.client.phone")},
    {"client.phone of 64 characters", 'd', "/receipt/client/phone", std::string(64, '5'),
        refusedInOlder("PatternMismatch: #/receipt.client.phone")},
    {"client.phone of 65 characters", 'd', "/receipt/client/phone", std::string(65, '5'),
        {"PatternMismatch: #/receipt.client.phone", "StringTooLong: #/receipt.client.phone",
            "StringTooLong: #/receipt.client.phone"}},
    {"client.inn of 12 digits", 'd', "/receipt/client/inn", "770000000012", accepted},
    {"a malformed client.inn", 'd', "/receipt/client/inn", "77000000001",
        refusedInNewer("PatternMismatch: #/receipt.client.inn")},
    {"internet false", 'd', "/receipt/internet", false, accepted},
    {"internet true with a client", 'd', "/receipt/internet", true, accepted},

    {"no company.email", 'o', "/receipt/company/email", "absent",
        refusedByLetter("PropertyRequired: #/receipt.company.email")},
    {"company.email of 65 characters", 'd', "/receipt/company/email", letters(65),
        refused("StringTooLong: #/receipt.company.email")},
    {"company.inn of 11 digits", 'd', "/receipt/company/inn", "77000000001",
        refused("PatternMismatch: #/receipt.company.inn")},
    {"no payment_address", 'd', "/receipt/company/payment_address", "absent",
        refused("PropertyRequired: #/receipt.company.payment_address")},
    {"payment_address of 257 characters", 'd', "/receipt/company/payment_address", letters(257),
        refused("StringTooLong: #/receipt.company.payment_address")},
    {"an unknown sno", 'd', "/receipt/company/sno", "simple",
        refused("NotInEnumeration: #/receipt.company.sno")},
    {"cashier of 64 characters", 'd', "/receipt/cashier", letters(64), accepted},
    {"cashier of 65 characters", 'd', "/receipt/cashier", letters(65),
        refusedInNewer("StringTooLong: #/receipt.cashier")},

    {"no items", 'd', "/receipt/items", many("items", 0),
        refused("TooFewItems: #/receipt.items, NumberTooBig: #/receipt.total")},
    {"100 items", 'd', "/receipt/items", many("items", 100), accepted},
    {"101 items", 'd', "/receipt/items", many("items", 101), refused("TooManyItems: #/receipt.items")},
    {"name of 128 characters", 'd', item + "/name", letters(128), accepted},
    {"name of 129 characters", 'd', item + "/name", letters(129),
        refused("StringTooLong: #/receipt.items[0].name")},
    {"price of 42949672.95", 'd', item + "/price", 42949672.95, accepted},
    {"price of 42949672.96", 'd', item + "/price", 42949672.96,
        refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
    {"price of 10000000000", 'd', item + "/price", 10'000'000'000,
        refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
    {"price of 9999999999.99", 'd', item + "/price", 9'999'999'999.99,
        refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
    {"price of 10000000000.01", 'd', item + "/price", 10'000'000'000.01,
        refused("NumberTooBig: #/receipt.items[0].price")},
    {"price with three decimals", 'd', item + "/price", 33.333,
        refused("NumberNotMultipleOf: #/receipt.items[0].price")},
    {"a negative price", 'd', item + "/price", -0.01, refused("NumberTooSmall: #/receipt.items[0].price")},
    {"quantity of nothing", 'd', item + "/quantity", 0,
        refused("NumberTooSmall: #/receipt.items[0].quantity")},
    {"quantity of 0.001", 'd', item + "/quantity", 0.001, accepted},
    {"quantity of 0.000001", 'd', item + "/quantity", 0.000001,
        refusedInOlder("NumberTooSmall: #/receipt.items[0].quantity")},
    {"quantity with six decimals", 'd', item + "/quantity", 1.000002,
        refusedInOlder("NumberNotMultipleOf: #/receipt.items[0].quantity")},
    {"quantity of 0.0000005", 'd', item + "/quantity", 0.0000005,
        refused("NumberTooSmall: #/receipt.items[0].quantity")},
    {"quantity of 1.0000005", 'd', item + "/quantity", 1.0000005,
        Answers{"", "NumberNotMultipleOf: #/receipt.items[0].quantity",
            "NumberNotMultipleOf: #/receipt.items[0].quantity"}},
    {"quantity of 99999.999", 'd', item + "/quantity", 99999.999, accepted},
    {"quantity of 100000", 'd', item + "/quantity", 100000,
        refused("NumberTooBig: #/receipt.items[0].quantity")},
    {"measurement_unit of 16 characters", 'd', item + "/measurement_unit", letters(16), accepted},
    {"measurement_unit of 17 characters", 'd', item + "/measurement_unit", letters(17),
        refusedInNewer("StringTooLong: #/receipt.items[0].measurement_unit")},
    {"an unknown payment_method", 'd', item + "/payment_method", "cash",
        refused("NotInEnumeration: #/receipt.items[0].payment_method")},
    {"an unknown payment_object", 'd', item + "/payment_object", "milk",
        refused("NotInEnumeration: #/receipt.items[0].payment_object")},

    {"an item without vat", 'o', item + "/vat", "absent",
        refusedByLetter("PropertyRequired: #/receipt.items[0].vat")},
    {"vat without type", 'd', item + "/vat", Json::object(),
        refused("PropertyRequired: #/receipt.items[0].vat.type")},
    {"vat18 since 2019", 'd', item + "/vat/type", "vat18",
        refused("NotInEnumeration: #/receipt.items[0].vat.type")},
    {"vat118 since 2019", 'd', item + "/vat/type", "vat118",
        refused("NotInEnumeration: #/receipt.items[0].vat.type")},
    {"a wrong vat.sum at first", 'r', item + "/vat/sum", 1, accepted},

    {"bytes of a product code", 'd', item + "/nomenclature_code", bytes(32), accepted},
    {"33 bytes", 'd', item + "/nomenclature_code", bytes(33),
        refused("PatternMismatch: #/receipt.items[0].nomenclature_code")},
    {"text of a GS1 code", 'd', item + "/nomenclature_code", gs1,
        refusedInOlder("PatternMismatch: #/receipt.items[0].nomenclature_code")},
    {"text of a GS1 code of 150 characters", 'd', item + "/nomenclature_code",
        gs1 + std::string(150 - gs1.size(), '9'),
        refusedInOlder("PatternMismatch: #/receipt.items[0].nomenclature_code")},
    {"text of a GS1 code of 151 characters", 'd', item + "/nomenclature_code",
        gs1 + std::string(151 - gs1.size(), '9'),
        refused("PatternMismatch: #/receipt.items[0].nomenclature_code")},
    {"code of a tobacco packet", 'd', item + "/nomenclature_code", "04600439931256JgXJ5.TABcd+EfG",
        refusedInOlder("PatternMismatch: #/receipt.items[0].nomenclature_code")},
    {"a text that is no code", 'd', item + "/nomenclature_code", "4606203090785",
        refused("PatternMismatch: #/receipt.items[0].nomenclature_code")},

    {"agent_info without supplier_info", 'd', item + "/agent_info", {{"type", "attorney"}},
        refused("PropertyRequired: #/receipt.items[0].supplier_info")},
    {"supplier's phone of 18 digits after the plus", 'd', item + "/supplier_info",
        {{"phones", {"+123456789012345678"}}}, accepted},
    {"supplier's phone of 18 digits", 'd', item + "/supplier_info", {{"phones", {"123456789012345678"}}},
        refused("PatternMismatch: #/receipt.items[0].supplier_info.phones[0]")},
    {"supplier's phone with brackets", '?', item + "/supplier_info", {{"phones", {"8(999)000-00-00"}}},
        refusedInOlder("PatternMismatch: #/receipt.items[0].supplier_info.phones[0]")},

    {"6 vats", 'd', "/receipt/vats", vats(6), accepted},
    {"7 vats", 'd', "/receipt/vats", vats(7), refusedInNewer("TooManyItems: #/receipt.vats")},

    {"no payments", 'd', "/receipt/payments", many("payments", 0),
        {"TooFewItems: #/receipt.payments, NumberTooBig: #/receipt.total",
            "TooFewItems: #/receipt.payments, NumberTooBig: #/receipt.total",
            "TooFewItems: #/receipt.payments"}},
    {"10 payments", 'd', "/receipt/payments", many("payments", 10), accepted},
    {"11 payments", 'd', "/receipt/payments", many("payments", 11),
        refused("TooManyItems: #/receipt.payments")},
    {"payment of type 9", 'd', "/receipt/payments/0/type", 9, accepted},
    {"payment of type 10", 'd', "/receipt/payments/0/type", 10,
        refused("NumberTooBig: #/receipt.payments[0].type")},
    {"payments that differ from the total", 'o', "/receipt/payments/0/sum", 150.51,
        refusedByLetter("NumberTooSmall: #/receipt.total")},
    {"items that differ from the total by 99 kopecks", 'd', item + "/sum", 151.49, accepted},
    {"items that differ from the total by a rouble", 'd', item + "/sum", 151.50,
        refused("NumberTooSmall: #/receipt.total")},
    {"sum of 42949672.96", 'd', item + "/sum", 42949672.96,
        {"NumberTooBig: #/receipt.items[0].sum, NumberTooSmall: #/receipt.total",
            "NumberTooSmall: #/receipt.total", "NumberTooSmall: #/receipt.total"}},
    {"sum of 10000000000.01", 'd', item + "/sum", 10'000'000'000.01,
        refused("NumberTooBig: #/receipt.items[0].sum")},
    {"payment of 42949672.96", 'd', "/receipt/payments/0/sum", 42949672.96,
        {"NumberTooBig: #/receipt.payments[0].sum, NumberTooSmall: #/receipt.total",
            "NumberTooSmall: #/receipt.total", ""}},
    {"payment of 10000000000.01", 'd', "/receipt/payments/0/sum", 10'000'000'000.01,
        refused("NumberTooBig: #/receipt.payments[0].sum")},
    {"total of 10000000000.01", 'd', "/receipt/total", 10'000'000'000.01,
        refused("NumberTooBig: #/receipt.total")},
    {"an unknown type among vats", 'd', "/receipt/vats", Json::array({{{"type", "vat25"}}}),
        refused("NotInEnumeration: #/receipt.vats[0].type")},
    {"vats of 42949672.96", 'd', "/receipt/vats", Json::array({{{"type", "vat10"}, {"sum", 42949672.96}}}),
        refusedInOlder("NumberTooBig: #/receipt.vats[0].sum")},
    {"vats of 10000000000.01", 'd', "/receipt/vats",
        Json::array({{{"type", "vat10"}, {"sum", 10'000'000'000.01}}}),
        refused("NumberTooBig: #/receipt.vats[0].sum")},
    {"a negative total", 'r', "/receipt/total", -1, refused("NumberTooSmall: #/receipt.total")},
};

const Row agentRows[] = {
    {"an unknown type of agent", 'd', "/type", "broker",
        refused("NotInEnumeration: #/receipt.items[0].agent_info.type")},
    {"agent's phone of 17 characters", 'd', "", agent("8(999)000-00-00xx"), accepted},
    {"agent's phone of 18 characters after the plus", 'd', "", agent("+123456789012345678"), accepted},
    {"an empty phone of an agent", 'd', "", agent(""), accepted},
    {"agent's phone of 18 characters", 'd', "", agent("123456789012345678"),
        refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
    {"agent's phone of 19 characters after the plus", 'd', "", agent("+1234567890123456789"),
        refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
    {"agent's phone with a space", 'd', "", agent("8 999 000 00 00"),
        refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
    {"agent's phone with a backslash", 'd', "", agent("8\\999"),
        refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
};

const Row correctionRows[] = {
    {"timestamp in another form", 'd', "/timestamp", "2026-03-01 10:00:00",
        refused("PatternMismatch: #/timestamp")},
    {"timestamp in ISO form with a zone", 'r', "/timestamp", "2026-03-01T10:00:00+03:00",
        refusedByLetter("PatternMismatch: #/timestamp")},
    {"external_id of 129 characters", 'd', "/external_id", letters(129),
        refused("StringTooLong: #/external_id")},
    {"company.inn of 11 digits", 'd', "/correction/company/inn", "77000000001",
        refused("PatternMismatch: #/correction.company.inn")},
    {"an unknown sno", 'd', "/correction/company/sno", "simple",
        refused("NotInEnumeration: #/correction.company.sno")},
    {"no payment_address", 'd', "/correction/company/payment_address", "absent",
        refused("PropertyRequired: #/correction.company.payment_address")},
    {"no correction_info", 'd', "/correction/correction_info", "absent",
        refusedInNewer("PropertyRequired: #/correction.correction_info")},
    {"empty vats", 'd', "/correction/vats", Json::array(), refusedInNewer("TooFewItems: #/correction.vats")},
    {"7 vats", 'd', "/correction/vats", vats(7), refusedInNewer("TooManyItems: #/correction.vats")},
    {"cashier of 65 characters", 'd', "/correction/cashier", letters(65),
        refusedInNewer("StringTooLong: #/correction.cashier")},
    {"internet without client", 'd', "/correction/internet", true,
        refusedInNewer("PropertyRequired: #/correction.client")},
    {"no payments", 'd', "/correction/payments", "absent",
        refused("PropertyRequired: #/correction.payments")},
};

enum class Body
{
    Receipt,
    Correction
};

void expectAnswers(const Row& row, Body kind, const Json& body)
{
    const std::pair<const Edition*, const std::string*> expected[] = {
        {&older, &row.answers.inOlder}, {&strict, &row.answers.inStrict}, {&usual, &row.answers.inUsual}};
    for (const auto& [edition, answer] : expected) {
        const ReceiptCheck check(*edition, listsOf(edition->revision));
        const auto wrong = kind == Body::Receipt ? check.violationsOfReceipt(body, {})
                                                 : check.violationsOfCorrection(body, {});
        EXPECT_EQ(describe(wrong), *answer)
            << row.rule << " (" << row.source << ") in " << static_cast<int>(edition->revision)
            << (edition->strict ? ", strict" : "");
    }
}

} // namespace

TEST(Editions, AnswerAReceiptByTheirRules)
{
    for (const Row& row : receiptRows)
        expectAnswers(row, Body::Receipt, changed(goodReceipt(), row.pointer, row.value));
}

TEST(Editions, AnswerAnAgentsReceiptByTheirRules)
{
    const Json ofAgent = changed(changed(goodReceipt(), item + "/agent_info", agent("+79990000000")),
        item + "/supplier_info", supplier);
    for (const Row& row : agentRows)
        expectAnswers(row, Body::Receipt, changed(ofAgent, item + "/agent_info" + row.pointer, row.value));
}

TEST(Editions, AnswerACorrectionByTheirRules)
{
    expectAnswers({"a good correction", 'd', "", {}, accepted}, Body::Correction, goodCorrection());
    for (const Row& row : correctionRows)
        expectAnswers(row, Body::Correction, changed(goodCorrection(), row.pointer, row.value));
}

TEST(Editions, NameTheMissingClientOfAnInternetReceiptOnce)
{
    const Json body = changed(changed(goodReceipt(), "/receipt/internet", true), "/receipt/client", "absent");
    for (const auto& [edition, violations] : {std::pair(usual, 1u), std::pair(strict, 2u)}) {
        const ReceiptCheck check(edition, listsOf(newestRevision));
        EXPECT_EQ(describe(check.violationsOfReceipt(body, {})), "PropertyRequired: #/receipt.client");
        EXPECT_EQ(check.violationsOfReceipt(body, {}).size(), violations);
    }
}

TEST(Editions, KnowTheNamesOfTheirRevision)
{
    using testing::ElementsAre;
    EXPECT_THAT(listsOf(Revision::May2023).vatTypes,
        ElementsAre("none", "vat0", "vat10", "vat20", "vat110", "vat120"));
    EXPECT_THAT(listsOf(Revision::December2025).vatTypes,
        ElementsAre("none", "vat0", "vat5", "vat7", "vat10", "vat20", "vat22", "vat105", "vat107", "vat110",
            "vat120", "vat122"));
    for (const Revision revision : {Revision::May2023, Revision::December2025}) {
        EXPECT_THAT(listsOf(revision).taxationSystems,
            ElementsAre("osn", "usn_income", "usn_income_outcome", "envd", "esn", "patent"));
        EXPECT_THAT(listsOf(revision).agentTypes,
            ElementsAre("bank_paying_agent", "bank_paying_subagent", "paying_agent", "paying_subagent",
                "attorney", "commission_agent", "another"));
    }
    const auto objects = listsOf(Revision::December2025).paymentObjects;
    EXPECT_EQ(listsOf(Revision::May2023).paymentObjects.size(), 13u);
    EXPECT_EQ(objects.size(), 27u);
    for (const char* name : {"award", "property_right", "non-operating_gain", "insurance_premium",
             "sales_tax", "resort_fee", "deposit", "expense", "pension_insurance_ip", "pension_insurance",
             "medical_insurance_ip", "medical_insurance", "social_insurance", "casino_payment"}) {
        EXPECT_THAT(listsOf(Revision::May2023).paymentObjects, testing::Not(testing::Contains(name)));
        EXPECT_THAT(objects, testing::Contains(name));
    }
    for (const char* name : {"commodity", "another"})
        EXPECT_THAT(objects, testing::Contains(name));
    for (const std::string& name : listsOf(Revision::December2025).vatTypes)
        EXPECT_TRUE(vatRate(name)) << name;
    EXPECT_EQ(vatRate("vat25"), std::nullopt);
}

TEST(Editions, RefuseTheNumberOfAnotherTaxpayerAtOnceOrLater)
{
    for (const Edition& edition : {older, strict, usual}) {
        const bool atOnce = edition.strict || edition.revision == Revision::May2023;
        const ReceiptCheck check(edition, listsOf(edition.revision));
        EXPECT_EQ(describe(check.violationsOfReceipt(goodReceipt(), "7700000001")),
            atOnce ? "PatternMismatch: #/receipt.company.inn" : "");
        EXPECT_EQ(describe(check.violationsOfCorrection(goodCorrection(), "7700000001")),
            atOnce ? "PatternMismatch: #/correction.company.inn" : "");
        const auto later = lateFailureOf(goodReceipt()["receipt"], "7700000001", edition);
        EXPECT_EQ(later.has_value(), !atOnce);
        EXPECT_EQ(lateFailureOf(goodReceipt()["receipt"], "7700000000", edition), std::nullopt);
    }
}

TEST(Editions, FailAReceiptWithAWrongSumOfVat)
{
    struct Sum
    {
        const char* type;
        Json sum;
        bool wrong;
    };
    // Of 150.50 roubles. A kopeck may be due to rounding.
    const Sum sums[] = {{"vat10", 13.68, false}, {"vat10", 13.69, false}, {"vat10", 13.67, false},
        {"vat10", 13.70, true}, {"vat10", 15.05, true}, {"vat10", nullptr, false}, {"vat110", 13.68, false},
        {"vat20", 25.08, false}, {"vat20", 13.68, true}, {"vat22", 27.14, false}, {"vat122", 27.14, false},
        {"vat5", 7.17, false}, {"vat105", 7.17, false}, {"vat7", 9.85, false}, {"vat107", 9.85, false},
        {"none", 0, false}, {"none", 13.68, true}, {"vat0", 0, false}, {"vat10", "13.68", true},
        {"vat10", 13.681818, true}, {"vat25", 1, false}};
    for (const Sum& row : sums) {
        Json receipt = goodReceipt()["receipt"];
        receipt["items"][0]["vat"] = {{"type", row.type}, {"sum", row.sum}};
        EXPECT_EQ(lateFailureOf(receipt, {}, usual).has_value(), row.wrong) << row.type << " " << row.sum;
        EXPECT_FALSE(lateFailureOf(receipt, {}, older)) << row.type << " " << row.sum;
    }
}
