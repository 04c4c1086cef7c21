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

// Replaces one value of the whole payload; removes it when the JSON is empty.
QVariantMap wholeExcept(const char* key, const char* json)
{
    QVariantMap changed = whole;
    if (*json == '\0')
        changed.remove(QString::fromLatin1(key));
    else
        changed.insert(QString::fromLatin1(key),
            payload((QByteArray(R"({"v":)") + json + "}").constData()).value(u"v"_s));
    return changed;
}

TEST(FiscalPayload, ProvesARegistrationOnlyWithWholeValues)
{
    struct Row
    {
        const char* key;
        const char* json;
        bool proves;
    };
    constexpr auto total = "total";
    constexpr auto document = "fiscal_document_number";
    constexpr auto storage = "fn_number";
    constexpr auto sign = "fiscal_document_attribute";
    const Row rows[] = {
        {total, "1030", true},
        {total, "0.5", true},
        {total, "0", true},
        {total, "\"1030\"", false},
        {total, "true", false},
        {total, "null", false},
        {total, "", false},
        {document, "1", true},
        {document, "29414.0", true},
        {document, "2147483647", true},
        {document, "2147483648", false},
        {document, "2147483649", false},
        {document, "4294967297", false},
        {document, "0", false},
        {document, "-1", false},
        {document, "1.5", false},
        {document, "\"29414\"", false},
        {document, "true", false},
        {document, "[29414]", false},
        {document, "null", false},
        {document, "", false},
        {storage, "\"0000000000000001\"", true},
        {storage, "\"025144030004684\"", false},
        {storage, "\"02514403000468400\"", false},
        {storage, "\"025144030004684x\"", false},
        {storage, "\"\"", false},
        {storage, "9251440300046840", false},
        {storage, "null", false},
        {storage, "", false},
        {sign, "1", true},
        {sign, "4294967295", true},
        {sign, "4294967296", false},
        {sign, "0", false},
        {sign, "-3449555941", false},
        {sign, "\"3449555941\"", false},
        {sign, "3449555941.5", false},
        {sign, "null", false},
        {sign, "", false},
        {"receipt_datetime", "", true},
        {"shift_number", "", true},
        {"ecr_registration_number", "", true},
        {"ofd_receipt_url", "", true},
    };
    for (const Row& row : rows) {
        const QVariantMap changed = wholeExcept(row.key, row.json);
        const QStringList expected = row.proves ? QStringList() : QStringList{QString::fromLatin1(row.key)};
        EXPECT_EQ(missingProof(changed), expected) << row.key << " " << row.json;
        if (!row.proves) {
            EXPECT_EQ(qrText(readPayload(changed, 1).info), QString()) << row.key << " " << row.json;
        }
    }
    EXPECT_EQ(missingProof({}), (QStringList{u"total"_s, u"fiscal_document_number"_s, u"fn_number"_s,
                                    u"fiscal_document_attribute"_s}));
}

TEST(FiscalPayload, HoldsNothingThatIsNotOfItsType)
{
    const auto [info, url] = readPayload(
        payload(R"({"receipt_datetime":20200115,"fn_number":9251440300046840,"ecr_registration_number":1,
            "shift_number":"17","fiscal_document_number":2147483649,"fiscal_document_attribute":"3449555941",
            "total":"1030","ofd_receipt_url":["https://ofd.example/1"]})"),
        std::nullopt);
    EXPECT_FALSE(info.dateTime.isValid());
    EXPECT_EQ(info.fnNumber, QString());
    EXPECT_EQ(info.registrationNumber, QString());
    EXPECT_EQ(info.shiftNumber, QString());
    EXPECT_EQ(info.fiscalDocumentNumber, 0);
    EXPECT_EQ(info.fiscalSign, QString());
    EXPECT_TRUE(qIsNaN(info.total));
    EXPECT_EQ(url, QString());
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
    EXPECT_EQ(qrText(readPayload(wholeExcept("receipt_datetime", ""), 1).info), QString());
    EXPECT_EQ(qrText({}), QString());
}

} // namespace
