#include "hostcli/queue/views/conclusion.h"

#include "hostcli/terminal/resultreport.h"
#include "tests/support/qtprinters.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;
using namespace till;

ReceiptResult receipt(Outcome outcome, NextStep next)
{
    ReceiptResult result;
    result.file = u"a.json"_s;
    result.line = 3;
    result.id = u"till-1"_s;
    result.outcome = outcome;
    result.next = next;
    result.sent = true;
    return result;
}

ReceiptResult registered()
{
    ReceiptResult result = receipt(Outcome::Registered, NextStep::None);
    result.uuid = u"u"_s;
    result.recovered = true;
    result.compared = Comparison::Content;
    result.receiptUrl = u"https://ofd.example/1"_s;
    FiscalInfo info;
    info.dateTime = QDateTime(QDate(2020, 1, 15), QTime(21, 10, 5));
    info.fnNumber = u"0251440300046840"_s;
    info.registrationNumber = u"0001234500006789"_s;
    info.shiftNumber = u"17"_s;
    info.fiscalDocumentNumber = 29414;
    info.taxSystem = u"Общая"_s;
    info.fiscalSign = u"3449555941"_s;
    info.total = 1030.5;
    result.fiscal = info;
    return result;
}

ReceiptResult failed()
{
    ReceiptResult result = receipt(Outcome::Refused, NextStep::NewId);
    result.error = ErrorInfo{u"FrWorkWithServiceException"_s, ServiceCode::WrongCredentials, u"бумага"_s,
        u"Нет бумаги"_s, u"e-1"_s};
    return result;
}

ReceiptResult ofTheTotal()
{
    ReceiptResult result = registered();
    result.compared = Comparison::Total;
    result.fiscal->dateTime = {};
    return result;
}

TEST(Conclusion, ReadsEveryPartOfAStoredResult)
{
    for (const ReceiptResult& result :
        {registered(), ofTheTotal(), failed(), receipt(Outcome::Incomplete, NextStep::Rerun),
            receipt(Outcome::Unknown, NextStep::Account), receipt(Outcome::Refused, NextStep::Correct)}) {
        const QByteArray line = toJsonLine(result);
        const ReceiptResult read = resultIn(QJsonDocument::fromJson(line).object());
        EXPECT_EQ(toJsonLine(read), line);
        EXPECT_EQ(toText(read), toText(result));
    }
}

} // namespace
