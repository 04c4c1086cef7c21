#include "tests/support/qtprinters.h"
#include "till/wire/serviceanswer.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using till::readAnswer;
using till::ServiceAnswer;
using till::ServiceCode;

ServiceAnswer answer(const char* json)
{
    return readAnswer(QJsonDocument::fromJson(json).toVariant());
}

TEST(ServiceAnswer, IsNoneWithoutAJsonObject)
{
    EXPECT_FALSE(readAnswer({}).arrived);
    EXPECT_FALSE(answer("[1]").arrived);
    EXPECT_FALSE(answer("{}").arrived);
}

TEST(ServiceAnswer, HoldsWhatTheServiceSaid)
{
    const ServiceAnswer given = answer(
        R"({"uuid":"u","external_id":"e","status":"wait","error":{"error_id":"i","code":33,"type":"system","text":"t"}})");
    EXPECT_TRUE(given.arrived);
    EXPECT_EQ(given.errorId, u"i"_s);
    EXPECT_EQ(given.uuid, u"u"_s);
    EXPECT_EQ(given.externalId, u"e"_s);
    EXPECT_EQ(given.status, u"wait"_s);
    EXPECT_EQ(given.errorCode, ServiceCode::DocumentExists);
    EXPECT_EQ(given.errorType, u"system"_s);
    EXPECT_EQ(given.errorText, u"t"_s);
}

TEST(ServiceAnswer, HasNoCodeWithoutAnErrorOrWithAnErrorThatHasNone)
{
    EXPECT_EQ(answer(R"({"error":null})").errorCode, std::nullopt);
    EXPECT_EQ(answer(R"({"error":{"text":"t"}})").errorCode, std::nullopt);
}

TEST(ServiceAnswer, HasACodeOnlyWhereItIsAnInteger)
{
    struct Row
    {
        const char* code;
        std::optional<int> read;
    };
    const Row rows[] = {
        {"32", 32},
        {"32.0", 32},
        {"0", 0},
        {"-1", -1},
        {"2147483647", 2147483647},
        {"-2147483648", -2147483647 - 1},
        {"2147483648", {}},
        {"-2147483649", {}},
        {"4294967297", {}},
        {"4294967328", {}},
        {"18446744073709551648", {}},
        {"31.6", {}},
        {"true", {}},
        {"\"32\"", {}},
        {"\"\"", {}},
        {"null", {}},
        {"[32]", {}},
        {"{}", {}},
    };
    for (const Row& row : rows) {
        const ServiceAnswer given = readAnswer(
            QJsonDocument::fromJson(QByteArray(R"({"error":{"code":)") + row.code + "}}").toVariant());
        const auto expected = row.read ? std::optional(ServiceCode{*row.read}) : std::nullopt;
        EXPECT_EQ(given.errorCode, expected) << row.code;
        EXPECT_TRUE(given.hasError) << row.code;
    }
}

TEST(ServiceAnswer, HasAnErrorUnlessThatIsNullOrEmpty)
{
    for (const char* error : {"null", "{}"})
        EXPECT_FALSE(answer((QByteArray(R"({"uuid":"u","error":)") + error + "}").constData()).hasError)
            << error;
    for (const char* error : {R"({"text":"t"})", "\"t\"", "false", "0", "[]"})
        EXPECT_TRUE(answer((QByteArray(R"({"uuid":"u","error":)") + error + "}").constData()).hasError)
            << error;
    EXPECT_FALSE(answer(R"({"uuid":"u"})").hasError);
}

TEST(ServiceAnswer, HoldsNothingThatIsNotAText)
{
    const ServiceAnswer given =
        answer(R"({"uuid":1,"external_id":true,"status":["wait"],"error":{"type":2,"text":{"a":1}}})");
    EXPECT_TRUE(given.arrived);
    EXPECT_EQ(given.uuid, QString());
    EXPECT_EQ(given.externalId, QString());
    EXPECT_EQ(given.status, QString());
    EXPECT_EQ(given.errorType, QString());
    EXPECT_EQ(given.errorText, QString());
}

TEST(ServiceAnswer, SaysFailedOnlyWhereTheDocumentItselfFailed)
{
    struct Row
    {
        const char* json;
        bool failed;
    };
    const Row rows[] = {
        {R"({"status":"fail","error":null})", true},
        {R"({"status":"fail","error":{"code":502,"type":"driver"}})", true},
        {R"({"status":"fail","error":{"code":11,"type":"driver"}})", true},
        {R"({"status":"fail","error":{"code":34,"type":"driver"}})", true},
        {R"({"status":"fail","error":{"code":2005,"type":"agent"}})", true},
        {R"({"status":"fail","error":{"code":1,"type":"timeout"}})", true},
        {R"({"status":"fail","uuid":"u","error":{"code":32,"type":"system"}})", true},
        {R"({"status":"fail","external_id":"e","error":{"code":0,"type":"unknown"}})", true},
        {R"({"status":"fail","error":{"code":11,"type":"system"}})", false},
        {R"({"status":"fail","uuid":"u","error":{"code":11,"type":"system"}})", false},
        {R"({"status":"fail","error":{"code":30,"type":"system"}})", false},
        {R"({"status":"fail","error":{"code":429,"type":"system"}})", false},
        {R"({"status":"fail","uuid":"u","error":{"code":"32","type":"system"}})", false},
        {R"({"status":"fail","uuid":"u","error":{"text":"t"}})", false},
        {R"({"status":"fail","external_id":"e","error":{"text":"t"}})", true},
        {R"({"status":"wait","error":{"code":502,"type":"driver"}})", false},
        {R"({"status":"done","error":null})", false},
        {R"({"status":"FAIL","error":null})", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(answer(row.json).saysFailed(), row.failed) << row.json;
}

} // namespace
