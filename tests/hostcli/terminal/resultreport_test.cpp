#include "hostcli/terminal/resultreport.h"
#include "tests/hostcli/fiscaldata.h"
#include "tests/support/qtprinters.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;
using namespace till;

ReceiptResult registered()
{
    ReceiptResult result;
    result.file = u"a.json"_s;
    result.line = 3;
    result.id = u"till-1"_s;
    result.outcome = Outcome::Registered;
    result.uuid = u"u"_s;
    result.fiscal = completeFiscalData();
    result.receiptUrl = u"https://ofd.example/1"_s;
    return result;
}

TEST(JsonLine, HoldsEveryPart)
{
    ReceiptResult result = registered();
    result.recovered = true;
    result.sent = true;
    EXPECT_EQ(toJsonLine(result),
        QByteArray(
            R"({"file":"a.json","fiscal":{"dateTime":"2020-01-15T21:10:05","fiscalDocumentNumber":29414,)"
            R"("fiscalSign":"3449555941","fnNumber":"0251440300046840","registrationNumber":"0001234500006789",)"
            R"("shiftNumber":"17","taxSystem":"Общая","total":1030},"id":"till-1","line":3,"next":"none",)"
            R"("outcome":"registered","qr":"t=20200115T2110&s=1030.00&fn=0251440300046840&i=29414&fp=3449555941&n=1",)"
            R"("receiptUrl":"https://ofd.example/1","recovered":true,"sent":true,"uuid":"u"})"
            "\n"));
}

TEST(JsonLine, LeavesOutWhatIsAbsent)
{
    ReceiptResult result;
    result.file = u"-"_s;
    result.line = 1;
    result.id = u"i"_s;
    result.outcome = Outcome::Unknown;
    result.next = NextStep::Rerun;
    result.error = ErrorInfo{u"FrWorkWithServiceException"_s, {}, u"Нет связи с ФР"_s};
    EXPECT_EQ(toJsonLine(result),
        QByteArray(
            R"({"error":{"message":"Нет связи с ФР","type":"FrWorkWithServiceException"},"file":"-","id":"i",)"
            R"("line":1,"next":"rerun","outcome":"unknown","sent":false})"
            "\n"));
    result.outcome.reset();
    result.error.reset();
    result.next = NextStep::None;
    EXPECT_EQ(toJsonLine(result), QByteArray(R"({"file":"-","id":"i","line":1,"next":"none","sent":false})"
                                             "\n"));
}

TEST(JsonLine, TellsHowARecoveredReceiptWasCompared)
{
    ReceiptResult result;
    result.compared = Comparison::Total;
    EXPECT_EQ(toJsonLine(result), QByteArray(R"({"compared":"total","line":0,"next":"none","sent":false})"
                                             "\n"));
    result.compared = Comparison::Content;
    EXPECT_EQ(toJsonLine(result), QByteArray(R"({"compared":"content","line":0,"next":"none","sent":false})"
                                             "\n"));
}

TEST(Text, SaysWhereOnlyTheTotalWasCompared)
{
    const QString line = u"only the total; the journal does not know the earlier receipt"_s;
    ReceiptResult result = registered();
    result.compared = Comparison::Total;
    EXPECT_TRUE(toText(result).contains(line));
    result.compared = Comparison::Content;
    EXPECT_FALSE(toText(result).contains(line));
}

TEST(JsonLine, HoldsTheServicesCodeAndWords)
{
    ReceiptResult result;
    result.id = u"i"_s;
    result.outcome = Outcome::Refused;
    result.sent = true;
    result.next = NextStep::Correct;
    result.error = ErrorInfo{u"E"_s, ServiceCode::InvalidReceipt, u"m"_s, u"d"_s, u"e-1"_s};
    EXPECT_EQ(toJsonLine(result),
        QByteArray(R"({"error":{"code":32,"detail":"d","errorId":"e-1","message":"m","type":"E"},"id":"i",)"
                   R"("line":0,"next":"correct","outcome":"refused","sent":true})"
                   "\n"));
}

TEST(JsonLine, OfAFailureHidesNoCharacter)
{
    const RunFailure failure{
        {{}, ServiceCode::WrongCredentials, u"m"_s, u"a\u202Eb"_s}, false, NextStep::Account};
    EXPECT_EQ(toJsonLine(failure),
        QByteArray(
            R"({"failure":{"code":12,"detail":"a\u202eb","message":"m"},"next":"account","sent":false})"
            "\n"));
}

TEST(Report, NamesEveryOutcome)
{
    struct Row
    {
        std::optional<Outcome> outcome;
        QString name;
        QString text;
    };
    const Row rows[] = {
        {std::nullopt, u""_s, u"accepted"_s},
        {Outcome::Registered, u"registered"_s, u"registered"_s},
        {Outcome::Incomplete, u"incomplete"_s, u"registered, evidence incomplete"_s},
        {Outcome::Refused, u"refused"_s, u"refused"_s},
        {Outcome::Unknown, u"unknown"_s, u"unknown"_s},
    };
    for (const Row& row : rows) {
        ReceiptResult result;
        result.id = u"i"_s;
        result.outcome = row.outcome;
        EXPECT_EQ(toText(result), u"i: %1\n"_s.arg(row.text));
        EXPECT_EQ(
            QJsonDocument::fromJson(toJsonLine(result)).object().value(u"outcome"_s).toString(), row.name);
    }
}

TEST(ResultText, IsAShortTable)
{
    EXPECT_EQ(toText(registered()), u"till-1: registered\n"
                                    u"  Service's identifier  u\n"
                                    u"  Date and time         15.01.2020 21:10:05\n"
                                    u"  Total                 1030.00\n"
                                    u"  Taxation system       Общая\n"
                                    u"  Register              0001234500006789\n"
                                    u"  Fiscal storage        0251440300046840\n"
                                    u"  Shift                 17\n"
                                    u"  Fiscal document       29414\n"
                                    u"  Fiscal sign           3449555941\n"
                                    u"  Text of the QR code   t=20200115T2110&s=1030.00&fn="
                                    u"0251440300046840&i=29414&fp=3449555941&n=1\n"
                                    u"  Receipt               https://ofd.example/1\n"_s);
}

TEST(ResultText, HoldsNoControlCharacters)
{
    ReceiptResult result;
    result.id = u"a\x1b[2Jb\n"_s;
    result.receiptUrl = u"c\r"_s;
    EXPECT_EQ(toText(result), u"a\uFFFD[2Jb\uFFFD: accepted\n  Receipt  c\uFFFD\n"_s);
}

TEST(ResultText, NamesTheCause)
{
    ReceiptResult result;
    result.id = u"i"_s;
    result.outcome = Outcome::Refused;
    result.error = ErrorInfo{u"E"_s, ServiceCode::InvalidReceipt, u"m"_s};
    EXPECT_EQ(toText(result), u"i: refused\n  Cause  m (code 32)\n"_s);
    result.error->detail = u"#/receipt.total"_s;
    result.error->errorId = u"e-1"_s;
    EXPECT_EQ(toText(result), u"i: refused\n"
                              u"  Cause                    m (code 32)\n"
                              u"  The service says         #/receipt.total\n"
                              u"  Identifier of the error  e-1\n"_s);
    result.error->message = result.error->detail;
    EXPECT_FALSE(toText(result).contains(u"The service says"_s)) << "the same words once";
}

} // namespace
