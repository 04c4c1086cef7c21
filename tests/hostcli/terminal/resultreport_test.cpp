#include "hostcli/terminal/resultreport.h"
#include "tests/support/qtprinters.h"
#include "till/wire/fiscalpayload.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

using namespace frhost;

FiscalInfo fiscal()
{
    FiscalInfo info;
    info.dateTime = QDateTime(QDate(2020, 1, 15), QTime(21, 10, 5));
    info.fnNumber = QStringLiteral("0251440300046840");
    info.registrationNumber = QStringLiteral("0001234500006789");
    info.shiftNumber = QStringLiteral("17");
    info.fiscalDocumentNumber = 29414;
    info.taxSystem = QStringLiteral("Общая");
    info.fiscalSign = QStringLiteral("3449555941");
    info.total = 1030;
    return info;
}

ReceiptResult registered()
{
    ReceiptResult result;
    result.file = QStringLiteral("a.json");
    result.line = 3;
    result.id = QStringLiteral("till-1");
    result.outcome = Outcome::Registered;
    result.uuid = QStringLiteral("u");
    result.fiscal = fiscal();
    result.receiptUrl = QStringLiteral("https://ofd.example/1");
    return result;
}

TEST(QrText, IsThatOfTheFiscalReceipt)
{
    EXPECT_EQ(qrText(fiscal()),
        QStringLiteral("t=20200115T2110&s=1030.00&fn=0251440300046840&i=29414&fp=3449555941&n=1"));
}

TEST(QrText, IsEmptyWithoutTheFiscalData)
{
    EXPECT_EQ(qrText({}), QString());
}

TEST(FiscalPayload, IsReadLikeTheDriversOwnRecord)
{
    const QJsonObject answer =
        QJsonDocument::fromJson(R"({"payload":{"receipt_datetime":"15.01.2020 21:10:05",
        "fn_number":"0251440300046840","ecr_registration_number":"0001234500006789","shift_number":17,
        "fiscal_document_number":29414,"fiscal_document_attribute":3449555941,"total":1030,
        "ofd_receipt_url":"https://ofd.example/1"}})")
            .object();
    ReceiptResult expected = registered();
    ReceiptResult read = registered();
    read.fiscal = fiscalInfo(answer, 1);
    read.receiptUrl = receiptUrl(answer);
    EXPECT_EQ(toJsonLine(read), toJsonLine(expected));
}

TEST(JsonLine, HoldsEveryPart)
{
    ReceiptResult result = registered();
    result.recovered = true;
    EXPECT_EQ(toJsonLine(result),
        QByteArray(
            R"({"file":"a.json","fiscal":{"dateTime":"2020-01-15T21:10:05","fiscalDocumentNumber":29414,)"
            R"("fiscalSign":"3449555941","fnNumber":"0251440300046840","registrationNumber":"0001234500006789",)"
            R"("shiftNumber":"17","taxSystem":"Общая","total":1030},"id":"till-1","line":3,)"
            R"("outcome":"registered","qr":"t=20200115T2110&s=1030.00&fn=0251440300046840&i=29414&fp=3449555941&n=1",)"
            R"("receiptUrl":"https://ofd.example/1","recovered":true,"uuid":"u"})"
            "\n"));
}

TEST(JsonLine, LeavesOutWhatIsAbsent)
{
    ReceiptResult result;
    result.file = QStringLiteral("-");
    result.line = 1;
    result.id = QStringLiteral("i");
    result.outcome = Outcome::Unknown;
    result.error =
        ErrorInfo{QStringLiteral("FrWorkWithServiceException"), {}, QStringLiteral("Нет связи с ФР")};
    EXPECT_EQ(toJsonLine(result),
        QByteArray(
            R"({"error":{"message":"Нет связи с ФР","type":"FrWorkWithServiceException"},"file":"-","id":"i",)"
            R"("line":1,"outcome":"unknown"})"
            "\n"));
    result.outcome.reset();
    result.error.reset();
    EXPECT_EQ(toJsonLine(result), QByteArray(R"({"file":"-","id":"i","line":1})"
                                             "\n"));
}

TEST(JsonLine, HoldsTheServicesCode)
{
    ReceiptResult result;
    result.id = QStringLiteral("i");
    result.outcome = Outcome::Refused;
    result.error = ErrorInfo{QStringLiteral("E"), 32, QStringLiteral("m")};
    EXPECT_EQ(toJsonLine(result),
        QByteArray(R"({"error":{"code":32,"message":"m","type":"E"},"id":"i","line":0,"outcome":"refused"})"
                   "\n"));
}

TEST(ResultText, IsAShortTable)
{
    EXPECT_EQ(toText(registered()), QStringLiteral("till-1: registered\n"
                                                   "  Service's identifier  u\n"
                                                   "  Date and time         15.01.2020 21:10:05\n"
                                                   "  Total                 1030.00\n"
                                                   "  Taxation system       Общая\n"
                                                   "  Register              0001234500006789\n"
                                                   "  Fiscal storage        0251440300046840\n"
                                                   "  Shift                 17\n"
                                                   "  Fiscal document       29414\n"
                                                   "  Fiscal sign           3449555941\n"
                                                   "  Text of the QR code   t=20200115T2110&s=1030.00&fn="
                                                   "0251440300046840&i=29414&fp=3449555941&n=1\n"
                                                   "  Receipt               https://ofd.example/1\n"));
}

TEST(ResultText, HoldsNoControlCharacters)
{
    ReceiptResult result;
    result.id = QStringLiteral("a\x1b[2Jb\n");
    result.receiptUrl = QStringLiteral("c\r");
    EXPECT_EQ(toText(result), QStringLiteral("a\uFFFD[2Jb\uFFFD: accepted\n  Receipt  c\uFFFD\n"));
}

TEST(ResultText, NamesTheCause)
{
    ReceiptResult result;
    result.id = QStringLiteral("i");
    result.outcome = Outcome::Refused;
    result.error = ErrorInfo{QStringLiteral("E"), 32, QStringLiteral("m")};
    EXPECT_EQ(toText(result), QStringLiteral("i: refused\n  Cause  m (code 32)\n"));
}

} // namespace
