#include "hostcli/queue/views/conclusion.h"

#include "hostcli/terminal/resultreport.h"
#include "tests/hostcli/fiscaldata.h"
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
    result.fiscal = completeFiscalData(1030.5);
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
