#include "tests/emulator/rules/editions.h"

#include "emulator/rules/latefailure.h"
#include "emulator/rules/receiptcheck.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

using namespace editions;
using namespace emulator;

namespace {

enum class Body
{
    Receipt,
    Correction
};

struct Known
{
    const Edition& edition;
    std::string Answers::*answer;
    const char* name;
};

const Known known[] = {{older, &Answers::inOlder, "the older revision"},
    {strict, &Answers::inStrict, "the newer revision, strict"},
    {usual, &Answers::inUsual, "the newer revision"}};

ReceiptCheck checkOf(const Edition& edition)
{
    return {edition, listsOf(edition.revision)};
}

void expectAnswers(const std::vector<Row>& rows, Body kind, const Json& good)
{
    for (const auto& [edition, answer, name] : known) {
        const ReceiptCheck check = checkOf(edition);
        for (const Row& row : rows) {
            const Json body = changed(good, row.pointer, row.value);
            const auto wrong = kind == Body::Receipt ? check.violationsOfReceipt(body, {})
                                                     : check.violationsOfCorrection(body, {});
            EXPECT_EQ(describe(wrong), row.answers.*answer)
                << row.rule << " (" << row.source << ") in " << name;
        }
    }
}

std::vector<Row> joined(const std::initializer_list<std::vector<Row>>& lists)
{
    std::vector<Row> all;
    for (const std::vector<Row>& list : lists)
        all.insert(all.end(), list.begin(), list.end());
    return all;
}

// The fields that the answers of an edition name, without indexes.
std::set<std::string> fieldsNamed(const std::vector<Row>& rows, std::string Answers::*answer)
{
    static const std::regex field("#/([^,]+)");
    static const std::regex index("\\[[0-9]+\\]");
    std::set<std::string> all;
    for (const Row& row : rows) {
        const std::string& text = row.answers.*answer;
        for (std::sregex_iterator found(text.begin(), text.end(), field), end; found != end; ++found)
            all.insert(std::regex_replace((*found)[1].str(), index, "[]"));
    }
    return all;
}

std::string fieldsOfLateFailure(const Json& receipt, const Edition& edition, const std::string& inn = {})
{
    const auto failure = lateFailureOf({.name = "receipt", .object = receipt, .inn = inn}, edition);
    std::string fields;
    for (const Violation& violation : failure ? failure->fields : std::vector<Violation>())
        fields += (fields.empty() ? "" : ", ") + violation.field;
    return fields;
}

} // namespace

TEST(Editions, AnswerAReceiptByTheirRules)
{
    expectAnswers(joined({envelopeRows(), sumRows(), itemRows(), codeRows()}), Body::Receipt, goodReceipt());
}

TEST(Editions, AnswerAnAgentsReceiptByTheirRules)
{
    expectAnswers(agentRows(), Body::Receipt, agentReceipt());
}

TEST(Editions, KnowTheNamesOfTheirRevision)
{
    expectAnswers(nameRows(), Body::Receipt, agentReceipt());
}

TEST(Editions, AnswerACorrectionByTheirRules)
{
    expectAnswers(correctionRows(), Body::Correction, goodCorrection());
}

TEST(Editions, HaveARowForEveryRule)
{
    const auto ofReceipts =
        joined({envelopeRows(), sumRows(), itemRows(), codeRows(), agentRows(), nameRows()});
    for (const auto& [edition, answer, name] : known) {
        const Json rules = checkOf(edition).list();
        for (const auto& [kind, rows] :
            {std::pair("receipt", ofReceipts), std::pair("correction", correctionRows())}) {
            const auto named = fieldsNamed(rows, answer);
            EXPECT_GT(rules[kind].size(), 10u);
            for (const Json& rule : rules[kind])
                EXPECT_TRUE(named.contains(rule.value("field", "nothing"))) << rule << " in " << name;
        }
    }
}

TEST(Editions, KnowTheRateOfEveryVat)
{
    for (const std::string& name : listsOf(Revision::December2025).vatTypes)
        EXPECT_TRUE(vatIn(name, 10'000)) << name;
    EXPECT_EQ(vatIn("vat22", 12'200), 2'200);
    EXPECT_EQ(vatIn("vat25", 10'000), std::nullopt);
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

TEST(Editions, RefuseTheNumberOfAnotherTaxpayerAtOnceOrLater)
{
    for (const Edition& edition : {older, strict, usual}) {
        const bool atOnce = edition.strict || edition.revision == Revision::May2023;
        const ReceiptCheck check(edition, listsOf(edition.revision));
        EXPECT_EQ(describe(check.violationsOfReceipt(goodReceipt(), "7700000001")),
            atOnce ? "PatternMismatch: #/receipt.company.inn" : "");
        EXPECT_EQ(describe(check.violationsOfCorrection(goodCorrection(), "7700000001")),
            atOnce ? "PatternMismatch: #/correction.company.inn" : "");
        const Json receipt = goodReceipt()["receipt"];
        EXPECT_EQ(fieldsOfLateFailure(receipt, edition, "7700000001"), atOnce ? "" : "receipt.company.inn");
        EXPECT_EQ(fieldsOfLateFailure(receipt, edition, "7700000000"), "");
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
        EXPECT_EQ(fieldsOfLateFailure(receipt, usual), row.wrong ? "receipt.items[0].vat.sum" : "")
            << row.type << " " << row.sum;
        EXPECT_EQ(fieldsOfLateFailure(receipt, older), "") << row.type << " " << row.sum;
    }
}

TEST(Editions, NameEveryWrongSumOfVatAndTheRightOne)
{
    Json receipt = goodReceipt()["receipt"];
    const Json good = receipt["items"][0];
    Json wrong = good;
    wrong["vat"]["sum"] = 20;
    receipt["items"] = {wrong, good, changed(wrong, "/vat/type", "none")};
    EXPECT_EQ(fieldsOfLateFailure(receipt, usual), "receipt.items[0].vat.sum, receipt.items[2].vat.sum");
    const std::string inn;
    const auto failure = lateFailureOf({.name = "receipt", .object = receipt, .inn = inn}, usual);
    EXPECT_EQ(failure->fields.front().rule, "ожидается сумма НДС по ставке: 13.68");
}
