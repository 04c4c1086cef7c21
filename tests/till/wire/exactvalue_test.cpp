#include "till/wire/exactvalue.h"

#include "tests/support/qtprinters.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QVariant value(const char* json)
{
    return QJsonDocument::fromJson(QByteArray("[") + json + "]").toVariant().toList().value(0);
}

TEST(ExactValue, IsOfItsTypeOrNone)
{
    struct Row
    {
        const char* json;
        QString text;
        std::optional<qint64> integer;
        std::optional<double> number;
    };
    const Row rows[] = {
        {"\"\"", {}, {}, {}},
        {"\"32\"", u"32"_s, {}, {}},
        {"32", {}, 32, 32.0},
        {"32.0", {}, 32, 32.0},
        {"3.2e1", {}, 32, 32.0},
        {"-1", {}, -1, -1.0},
        {"31.6", {}, {}, 31.6},
        {"100", {}, 100, 100.0},
        {"101", {}, {}, 101.0},
        {"-2", {}, {}, -2.0},
        {"4294967297", {}, {}, 4294967297.0},
        {"18446744073709551648", {}, {}, 18446744073709551648.0},
        {"true", {}, {}, {}},
        {"null", {}, {}, {}},
        {"[32]", {}, {}, {}},
        {"{\"32\":32}", {}, {}, {}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(exactText(value(row.json)), row.text) << row.json;
        EXPECT_EQ(exactInteger(value(row.json), -1, 100), row.integer) << row.json;
        EXPECT_EQ(exactNumber(value(row.json)), row.number) << row.json;
    }
    EXPECT_EQ(exactText({}), QString());
    EXPECT_EQ(exactNumber({}), std::nullopt);
}

} // namespace
