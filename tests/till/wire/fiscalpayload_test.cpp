#include "till/wire/fiscalpayload.h"

#include "tests/support/qtprinters.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QVariantMap payload(const char* json)
{
    return QJsonDocument::fromJson(json).toVariant().toMap();
}

const QVariantMap whole = payload(R"({"receipt_datetime":"15.01.2020 21:10:05","fn_number":"0251440300046840",
    "ecr_registration_number":"0001234500006789","shift_number":17,"fiscal_document_number":29414,
    "fiscal_document_attribute":3449555941,"total":1030,"ofd_receipt_url":"https://ofd.example/1"})");

TEST(FiscalPayload, HoldsEveryPart)
{
    const auto [info, url] = readPayload(whole, 1);
    EXPECT_EQ(info.dateTime, QDateTime(QDate(2020, 1, 15), QTime(21, 10, 5)));
    EXPECT_EQ(info.fnNumber, u"0251440300046840"_s);
    EXPECT_EQ(info.registrationNumber, u"0001234500006789"_s);
    EXPECT_EQ(info.shiftNumber, u"17"_s);
    EXPECT_EQ(info.fiscalDocumentNumber, 29414);
    EXPECT_EQ(info.taxSystem, u"Общая"_s);
    EXPECT_EQ(info.fiscalSign, u"3449555941"_s);
    EXPECT_EQ(info.total, 1030);
    EXPECT_EQ(url, u"https://ofd.example/1"_s);
}

TEST(FiscalPayload, NamesNoTaxationSystemThatTheReceiptDoesNotName)
{
    EXPECT_EQ(readPayload(whole, std::nullopt).info.taxSystem, QString());
}

TEST(FiscalPayload, HasATotalOnlyWhereItIsANumber)
{
    EXPECT_EQ(totalIn(payload(R"({"total":1030})")), 1030.0);
    EXPECT_EQ(totalIn(payload(R"({"total":0.5})")), 0.5);
    for (const char* json : {"{}", R"({"total":null})", R"({"total":"1030"})", R"({"total":true})"})
        EXPECT_EQ(totalIn(payload(json)), std::nullopt) << json;
}

TEST(QrText, IsThatOfTheFiscalReceipt)
{
    EXPECT_EQ(qrText(readPayload(whole, 1).info),
        u"t=20200115T2110&s=1030.00&fn=0251440300046840&i=29414&fp=3449555941&n=1"_s);
}

TEST(QrText, IsEmptyWithoutTheFiscalData)
{
    EXPECT_EQ(qrText({}), QString());
}

} // namespace
