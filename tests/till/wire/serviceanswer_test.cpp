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
        R"({"uuid":"u","external_id":"e","status":"wait","error":{"code":33,"type":"system","text":"t"}})");
    EXPECT_TRUE(given.arrived);
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
        {R"({"status":"wait","error":{"code":502,"type":"driver"}})", false},
        {R"({"status":"done","error":null})", false},
        {R"({"status":"FAIL","error":null})", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(answer(row.json).saysFailed(), row.failed) << row.json;
}

} // namespace
