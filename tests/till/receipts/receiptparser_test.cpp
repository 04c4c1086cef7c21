#include "tests/support/qtprinters.h"
#include "till/receipts/receiptparser.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

const QByteArray buyer = R"("requisites":[{"tag":1008,"value":"b@c"}],)";

// A receipt on three lines whose one position holds `inner` on the second.
QByteArray withPosition(const QByteArray& inner)
{
    return "{" + buyer +
           R"("id":"a","payments":[],"positions":[)"
           "\n{" +
           inner + "}\n]}";
}

const QByteArray position = R"("name":"n","price":1,"quantity":1,"sum":1)";

class Parser : public testing::Test
{
protected:
    // "line pointer: rule"; empty for a good receipt.
    [[nodiscard]] QString problem(const QByteArray& text) const
    {
        const auto parsed = parser.parse(text);
        const auto* found = std::get_if<ReceiptProblem>(&parsed);
        return found ? u"%1 %2: %3"_s.arg(QString::number(found->lineOffset), found->pointer, found->rule)
                     : QString();
    }
    [[nodiscard]] QString rest(const QByteArray& text, const char* beginning) const
    {
        const QString whole = problem(text);
        return whole.startsWith(QLatin1StringView(beginning)) ? QString::fromLatin1(beginning) : whole;
    }

    ReceiptParser parser;
};

TEST_F(Parser, TakesTheSmallestReceipt)
{
    EXPECT_EQ(problem("{" + buyer + R"("id":"a","positions":[],"payments":[]})"), QString());
    EXPECT_EQ(problem(withPosition(position)), QString());
}

TEST_F(Parser, TakesEveryExample)
{
    for (const char* name : {"plain", "agent", "marked", "mixed"}) {
        QFile file(QStringLiteral(EXAMPLES "/%1.json").arg(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(problem(file.readAll()), QString()) << name;
    }
}

TEST_F(Parser, KeepsNumbersAndTextsAsTheyAre)
{
    const auto parsed = parser.parse(withPosition(
        R"("name":"Молоко \"3,2 %\" \u0001","price":0.1,"quantity":99999.999,"sum":42949672.95,"exciseMarkType":-2147483648)"));
    const QJsonObject json = std::get<QJsonObject>(parsed).value(u"positions"_s).toArray().at(0).toObject();
    EXPECT_EQ(json.value(u"name"_s).toString(), u"Молоко \"3,2 %\" \x01"_s);
    EXPECT_EQ(json.value(u"price"_s).toDouble(), 0.1);
    EXPECT_EQ(json.value(u"quantity"_s).toDouble(), 99999.999);
    EXPECT_EQ(json.value(u"sum"_s).toDouble(), 42949672.95);
    EXPECT_EQ(json.value(u"exciseMarkType"_s).toInt(), std::numeric_limits<int>::min());
}

TEST_F(Parser, TakesEveryWayToWriteANumber)
{
    const std::pair<const char*, double> numbers[] = {{"0e308", 0}, {"-0e-308", 0}, {"0.000e25", 0},
        {"-0", 0}, {"1e-400", 0}, {"1E2", 100}, {"119.9", 119.9}, {"0.1e1", 1},
        {"9007199254740993", 9007199254740993}, {"18446744073709551615", 18446744073709551615.0},
        {"1.7976931348623157e308", 1.7976931348623157e308}, {"5e-324", 5e-324},
        {"123456789012345678901234567890", 123456789012345678901234567890.0}};
    for (const auto& [text, value] : numbers) {
        const auto parsed = parser.parse(
            withPosition(QByteArray(position).replace(R"("price":1)", QByteArray(R"("price":)") + text)));
        ASSERT_TRUE(std::holds_alternative<QJsonObject>(parsed)) << text;
        const QJsonObject json =
            std::get<QJsonObject>(parsed).value(u"positions"_s).toArray().at(0).toObject();
        EXPECT_EQ(json.value(u"price"_s).toDouble(-1), value) << text;
    }
    EXPECT_EQ(problem(withPosition(position + ",\n\"taxCode\":1e309")),
        u"2 : not JSON: Number too big to be stored in double."_s);
}

// The driver would turn each of them into a code that it knows.
TEST_F(Parser, RefusesCodesThatTheDriverDoesNotKnow)
{
    const std::pair<const char*, std::pair<int, int>> codes[] = {
        {"taxCode", {0, 5}}, {"paymentMethod", {1, 7}}, {"paymentObject", {1, 13}}};
    for (const auto& [key, range] : codes) {
        const auto with = [&, name = key](int code) {
            return problem(withPosition(position + ",\"" + name + "\":" + QByteArray::number(code)));
        };
        const QString begin = u"1 /positions/0/%1: %1 must be at "_s.arg(QString::fromLatin1(key));
        for (int code = range.first; code <= range.second; ++code)
            EXPECT_EQ(with(code), QString()) << key;
        EXPECT_TRUE(with(range.first - 1).startsWith(begin + u"least %1. "_s.arg(range.first))) << key;
        EXPECT_TRUE(with(range.second + 1).startsWith(begin + u"most %1. "_s.arg(range.second))) << key;
    }
}

TEST_F(Parser, RefusesEveryDocumentButASale)
{
    const auto ofType = [&](const char* type) {
        return problem("{" + buyer + R"("id":"a","positions":[],"payments":[],"documentType":)" + type + "}");
    };
    EXPECT_EQ(ofType("0"), QString());
    EXPECT_TRUE(ofType("1").startsWith(u"0 /documentType: documentType must be 0. Expected: "_s));
}

TEST_F(Parser, WantsTheContactOfTheBuyer)
{
    const auto with = [&](const char* requisites) {
        return problem(
            QByteArray(R"({"id":"a","positions":[],"payments":[],"requisites":)") + requisites + "}");
    };
    const QString missing =
        u"0 /requisites: the buyer's telephone or e-mail is missing: a requisite with the tag 1008 and a value"_s;
    EXPECT_EQ(with("[]"), missing);
    EXPECT_EQ(with(R"([{"tag":1055,"value":1}])"), missing);
    EXPECT_EQ(with(R"([{"tag":1008,"value":""}])"), missing);
    EXPECT_EQ(with(R"([{"tag":1055,"value":1},{"tag":1008,"value":"+79161234567"}])"), QString());
    EXPECT_EQ(
        problem(R"({"id":"a","positions":[],"payments":[]})"), u"0 : the key \"requisites\" is missing"_s);
}

TEST_F(Parser, NamesTheLineThePointerAndTheNearestKeyOfAnUnknownOne)
{
    EXPECT_EQ(problem(withPosition(position + R"(,"taxcode":1)")),
        u"1 /positions/0/taxcode: unknown key \"taxcode\"; did you mean \"taxCode\"?"_s);
    EXPECT_EQ(problem("{" + buyer + "\"id\":\"a\",\"positions\":[],\"payments\":[],\n\"sums\":1}"),
        u"1 /sums: unknown key \"sums\"; there are id, documentType, requisites, positions, payments"_s);
    EXPECT_EQ(problem(withPosition(position + R"(,"requisites":[{"tag":1,"member":[]}])")),
        u"1 /positions/0/requisites/0/member: unknown key \"member\"; did you mean \"members\"?"_s);
}

TEST_F(Parser, NamesTheRuleAndWhatIsExpected)
{
    struct Row
    {
        QByteArray receipt;
        const char* problem;
    };
    const auto line = [](const char* inner) { return withPosition(inner); };
    const Row rows[] = {
        {line(R"("name":"n","price":"1","quantity":1,"sum":1)"),
            "1 /positions/0/price: price must be a number, without quotes. Expected: Price of one unit after "
            "discount, in roubles, a number"},
        {line(R"("name":"n","price":true,"quantity":1,"sum":1)"),
            "1 /positions/0/price: price must be a number. Expected: Price of one unit after discount, in "
            "roubles, a number"},
        {line(R"("name":7,"price":1,"quantity":1,"sum":1)"),
            "1 /positions/0/name: name must be a text in quotes. Expected: Name of the line, a string"},
        {line(R"("name":"n","price":1,"quantity":1)"), "1 /positions/0: the key \"sum\" is missing"},
        {"{" + buyer + R"("positions":[],"payments":[]})", "0 : the key \"id\" is missing"},
        {"[]", "0 : the receipt must be an object in curly brackets"},
        {"{" + buyer + R"("id":"a","positions":{},"payments":[]})",
            "0 /positions: positions must be a list in square brackets"},
        {"{" + buyer + R"("id":"a","positions":[7],"payments":[]})",
            "0 /positions/0: this must be an object in curly brackets. Expected: One line of the receipt, an "
            "object"},
        {"{" + buyer + R"("id":"","positions":[],"payments":[]})",
            "0 /id: id must not be empty. Expected: The till's own identifier of the receipt, a string that "
            "is "
            "unique among all receipts of the group"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(problem(row.receipt), QString::fromUtf8(row.problem)) << row.receipt.constData();
}

TEST_F(Parser, RefusesIntegersThatDoNotFitInto32BitsAndFractions)
{
    for (const char* value : {"2147483648", "-2147483649", "1e20", "1.5", "\"1\"", "true", "null"}) {
        EXPECT_EQ(rest(withPosition(position + ",\"taxCode\":" + value), "1 /positions/0/taxCode: "),
            u"1 /positions/0/taxCode: "_s);
        EXPECT_EQ(rest(withPosition(position + ",\"requisites\":[{\"value\":1,\"tag\":" + value + "}]"),
                      "1 /positions/0/requisites/0/tag: "),
            u"1 /positions/0/requisites/0/tag: "_s);
    }
    for (const char* value : {"2147483648", "1.5", "true", "null", "[]"})
        EXPECT_EQ(rest(withPosition(position + ",\"requisites\":[{\"tag\":1,\"value\":" + value + "}]"),
                      "1 /positions/0/requisites/0/value: "),
            u"1 /positions/0/requisites/0/value: "_s);
}

// A double does not hold every kopeck of a larger amount, and sums of the largest become infinite, which JSON
// cannot express.
TEST_F(Parser, RefusesAmountsWithoutKopecks)
{
    const auto line = [](const char* key, const char* value) {
        QByteArray text = position + R"(,"discount":1)";
        return withPosition(
            text.replace('"' + QByteArray(key) + "\":1", '"' + QByteArray(key) + "\":" + value));
    };
    const auto payment = [](const char* value) {
        return "{" + buyer + R"("id":"a","positions":[],"payments":[{"type":1,"sum":)" + value + "}]}";
    };
    for (const char* value :
        {"90071992547409.94", "-90071992547409.94", "1e17", "1e306", "1e307", "-1e308"}) {
        const QString sum = u"1 /positions/0/sum: sum must be at "_s;
        const QString discount = u"1 /positions/0/discount: discount must be at "_s;
        const QString paid = u"0 /payments/0/sum: sum must be at "_s;
        EXPECT_TRUE(problem(line("sum", value)).startsWith(sum)) << value;
        EXPECT_TRUE(problem(line("discount", value)).startsWith(discount)) << value;
        EXPECT_TRUE(problem(payment(value)).startsWith(paid)) << value;
    }
    for (const char* value : {"90071992547409.92", "-90071992547409.92", "42949672.95", "1e13"}) {
        EXPECT_EQ(problem(line("sum", value)), QString()) << value;
        EXPECT_EQ(problem(line("discount", value)), QString()) << value;
        EXPECT_EQ(problem(payment(value)), QString()) << value;
    }
}

TEST_F(Parser, WantsEitherAValueOrMembersInARequisite)
{
    EXPECT_EQ(rest(withPosition(position + R"(,"requisites":[{"tag":1}])"),
                  "1 /positions/0/requisites/0: a requisite must"),
        u"1 /positions/0/requisites/0: a requisite must"_s);
    EXPECT_EQ(rest(withPosition(position + R"(,"requisites":[{"tag":1,"value":1,"members":[]}])"),
                  "1 /positions/0/requisites/0: a requisite must"),
        u"1 /positions/0/requisites/0: a requisite must"_s);
}

TEST_F(Parser, RefusesAKeyThatStandsTwice)
{
    EXPECT_EQ(problem(withPosition(position + R"(,"sum":2)")),
        u"1 /positions/0/sum: the key occurs twice in one object"_s);
    EXPECT_EQ(problem("{\"id\":\"a\",\"positions\":[],\"payments\":[],\n\n\"id\":\"b\"}"),
        u"2 /id: the key occurs twice in one object"_s);
}

TEST_F(Parser, RefusesWhatIsNotJson)
{
    EXPECT_EQ(rest("{\"id\":\"a\"\n\"x\"}", "1 : not JSON: "), u"1 : not JSON: "_s);
    EXPECT_EQ(rest("{\"id\":\"\xFF\"}", "0 : not JSON: "), u"0 : not JSON: "_s);
    EXPECT_EQ(rest("{}{}", "0 : not JSON: "), u"0 : not JSON: "_s);
    EXPECT_EQ(rest("{\"id\":\"a\",\"price\":NaN}", "0 : not JSON: "), u"0 : not JSON: "_s);
    EXPECT_EQ(rest("{\"id\":1e999}", "0 : not JSON: "), u"0 : not JSON: "_s);
}

TEST_F(Parser, RefusesExcessiveNesting)
{
    const QByteArray deep = QByteArray(100000, '[') + QByteArray(100000, ']');
    EXPECT_EQ(problem(deep), u"0 : the receipt is nested too deeply"_s);
    EXPECT_EQ(rest(QByteArray(100000, '['), "0 : not JSON: "), u"0 : not JSON: "_s);
}

int descriptionsIn(const QJsonValue& schema)
{
    int count = 0;
    for (const QJsonValue& part : schema.toArray())
        count += descriptionsIn(part);
    const QJsonObject object = schema.toObject();
    if (object.value(u"description"_s).isString()) {
        ++count;
        EXPECT_TRUE(object.value(u"descriptionRu"_s).isString())
            << object.value(u"description"_s).toString().toStdString();
    }
    for (const QJsonValue& part : object)
        count += descriptionsIn(part);
    return count;
}

TEST(Schema, IsDescribedInRussianToo)
{
    QFile file(u":/till/receipt.schema.json"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_GT(descriptionsIn(QJsonDocument::fromJson(file.readAll()).object()), 25);
}

} // namespace
