#include "host/exceptions.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/scriptedtransport.h"
#include "tests/support/sleeplessdriver.h"

#include <QJsonDocument>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

// Runs one conversation of a register with a service that gives these answers and then errors. The failures
// that a host expects are caught; any other exception ends the run.
void converse(const QList<QByteArray>& answers, const std::function<void(SleeplessDriver&)>& conversation)
{
    ScriptedTransport transport;
    for (const QByteArray& answer : answers)
        transport.answer(answer);
    AtolOnlineSettings settings;
    SleeplessDriver driver(&settings);
    try {
        driver.checkOpen(FiscalDocument());
        driver.setRequisite(FdRequisite(EFrDriver::BuyerContact, u"buyer@example.com"_s));
        driver.setRequisite(FdRequisite(EFrDriver::AppliedTaxSystem, 1));
        driver.checkAddPosition(FrPosition());
        driver.checkPay(FrPayment(1, 10));
        conversation(driver);
    } catch (const BasicException& e) {
        std::ignore = e.tr().ru();
    }
    std::ignore = driver.getFiscalInfo(0, true);
    std::ignore = QJsonDocument(driver.getLastResponse()).toJson();
}

void swallow(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

// The input is the body of a reply; it answers each request that a register makes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qInstallMessageHandler(swallow);
    const QByteArray body(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QByteArray queued = R"({"uuid":"U"})";
    const FiscalDocument document;
    converse({body}, [](SleeplessDriver& driver) { driver.connect(); });
    converse({body, body}, [&](SleeplessDriver& driver) { driver.checkClose(document); });
    converse({queued, body, body}, [&](SleeplessDriver& driver) { driver.checkClose(document); });
    converse({body, body}, [&](SleeplessDriver& driver) { std::ignore = driver.documentClose(document); });
    converse({body}, [](SleeplessDriver& driver) { driver.getDocumentInfo(u"U"_s); });
    return 0;
}
