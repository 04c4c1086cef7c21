#include "till/sale/registrar.h"

#include "host/abstractfrdriver.h"
#include "host/vposfrdriver.h"
#include "till/device/fiscalregister.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"
#include "till/wire/observingtransport.h"

#include <cmath>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

constexpr double halfKopeck = 0.005;

QString adviceFor(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Registered:
        return {};
    case Outcome::Refused:
        return Text::tr("Nothing was registered. Correct the cause and run the receipt again.");
    case Outcome::Unknown:
        break;
    }
    return Text::tr(
        "It may or may not be registered. Running the same file again is safe: a receipt that the "
        "service already has is not registered twice.");
}

QString newIdAdvice()
{
    return Text::tr("Nothing was registered, and this id is used up: sent again, it only brings the failed "
                    "document back. Give the sale a new id and run it again.");
}

QString notSentAdvice()
{
    return Text::tr("This run has not sent the receipt. Running the same file again is safe.");
}

QString foreignIdAdvice()
{
    return Text::tr("This sale is NOT registered. Give it an id of its own and run it again.");
}

} // namespace

void handOver(AbstractFrDriver& driver, const Receipt& receipt)
{
    driver.checkOpen(receipt.document);
    for (const FdRequisite& requisite : receipt.requisites)
        driver.setRequisite(requisite);
    for (const FrPosition& position : receipt.positions)
        driver.checkAddPosition(position);
    for (const FrPayment& payment : receipt.payments)
        driver.checkPay(payment);
}

Registrar::Registrar(FiscalRegister& usedRegister, ObservingTransport& usedTransport)
    : fiscalRegister(usedRegister)
    , transport(usedTransport)
{
}

ReceiptResult Registrar::started(const QueuedReceipt& queued) const
{
    transport.startReceipt();
    ReceiptResult result;
    result.file = queued.file;
    result.line = queued.line;
    result.id = queued.receipt.document.getInternalIdentifier();
    return result;
}

ReceiptResult Registrar::sell(const QueuedReceipt& queued)
{
    ReceiptResult result = started(queued);
    const auto error = attempt([&] {
        handOver(fiscalRegister.driver(), queued.receipt);
        fiscalRegister.driver().checkClose(queued.receipt.document);
    });
    noteError(result, error);
    result.uuid = transport.seen().registration.uuid;
    const SaleVerdict verdict = judgeSale(transport.seen(), result.id, error.has_value());
    if (verdict == SaleVerdict::TakeExisting)
        takeExisting(result, queued.receipt);
    else if (verdict == SaleVerdict::AskAgain)
        askAgain(result, queued.receipt);
    else
        conclude(result, verdict);
    if (verdict == SaleVerdict::Registered)
        takeResult(result);
    return result;
}

// The receipt is registered whatever happens here.
void Registrar::takeResult(ReceiptResult& result)
{
    result.error = attempt([&] {
        result.fiscal = fiscalRegister.driver().getFiscalInfo(0, true);
        result.receiptUrl = receiptUrl(fiscalRegister.service().getLastResponse());
    });
}

void Registrar::takeExisting(ReceiptResult& result, const Receipt& receipt)
{
    QString uuid;
    const auto error = attempt([&] { uuid = fiscalRegister.service().documentClose(receipt.document); });
    noteError(result, error);
    if (!uuid.isEmpty())
        result.uuid = uuid;
    if (result.uuid.isEmpty()) {
        conclude(result, SaleVerdict::Unknown);
        return;
    }
    const QJsonObject answer = askAgain(result, receipt);
    if (result.outcome != Outcome::Registered)
        return;
    result.recovered = true;
    compareTotals(result, receipt, answer);
}

QJsonObject Registrar::askAgain(ReceiptResult& result, const Receipt& receipt)
{
    QJsonObject answer;
    const auto ask = [&] {
        if (const auto error =
                attempt([&] { answer = fiscalRegister.service().getDocumentInfo(result.uuid); }))
            noteError(result, error);
        return judgeStatus(transport.seen().status, result.id);
    };
    const auto pause = [&] { std::this_thread::sleep_for(fiscalRegister.requestInterval()); };
    switch (awaitDocument(ask, pause)) {
    case DocumentState::Registered:
        conclude(result, SaleVerdict::Registered);
        result.fiscal = fiscalInfo(answer, receipt.taxSystem());
        result.receiptUrl = receiptUrl(answer);
        break;
    case DocumentState::Failed:
        conclude(result, SaleVerdict::Failed);
        break;
    default:
        conclude(result, SaleVerdict::Unknown);
    }
    return answer;
}

// The service does not compare the receipts behind one id; the total shows the commonest mix-up.
void Registrar::compareTotals(ReceiptResult& result, const Receipt& receipt, const QJsonObject& answer) const
{
    const QJsonValue total = answer.value(u"payload"_s).toObject().value(u"total"_s);
    if (!total.isDouble() || std::abs(total.toDouble() - receipt.total()) < halfKopeck)
        return;
    result.error = ErrorInfo{{}, transport.seen().registration.errorCode,
        Text::tr("The id already belongs to another receipt, registered with the total %1 instead of %2")
            .arg(QString::number(total.toDouble(), 'f', 2), QString::number(receipt.total(), 'f', 2))};
    result.outcome = Outcome::Refused;
    result.advice = foreignIdAdvice();
    result.recovered = false;
    result.fiscal.reset();
    result.receiptUrl.clear();
}

ReceiptResult Registrar::send(const QueuedReceipt& queued)
{
    ReceiptResult result = started(queued);
    const auto error = attempt([&] {
        handOver(fiscalRegister.driver(), queued.receipt);
        result.uuid = fiscalRegister.service().documentClose(queued.receipt.document);
    });
    noteError(result, error);
    const SaleVerdict verdict = judgeSending(transport.seen(), error.has_value());
    conclude(result, verdict);
    if (result.outcome == Outcome::Registered) {
        result.outcome.reset();
        result.uuid = transport.seen().registration.uuid;
        result.recovered = transport.seen().registration.errorCode.has_value();
    }
    return result;
}

void Registrar::conclude(ReceiptResult& result, SaleVerdict verdict) const
{
    const auto end = [&](Outcome outcome, const QString& message, const QString& advice) {
        result.outcome = outcome;
        result.advice = advice;
        if (outcome == Outcome::Registered)
            result.error.reset();
        else if (!result.error)
            result.error = ErrorInfo{{}, transport.seen().lastErrorCode, message};
    };
    switch (verdict) {
    case SaleVerdict::Registered:
        end(Outcome::Registered, {}, {});
        return;
    case SaleVerdict::Refused:
        end(Outcome::Refused, Text::tr("The receipt was refused"), adviceFor(Outcome::Refused));
        return;
    case SaleVerdict::Failed:
        end(Outcome::Refused, Text::tr("The service could not register the receipt"), newIdAdvice());
        tellFailure(*result.error);
        return;
    case SaleVerdict::NotSent:
        end(Outcome::Unknown, {}, notSentAdvice());
        result.error->message = result.error->message.isEmpty()
                                    ? Text::tr("Not sent, no connection")
                                    : Text::tr("Not sent, no connection: %1").arg(result.error->message);
        return;
    default:
        end(Outcome::Unknown, Text::tr("The service's answer does not say whether the receipt is registered"),
            adviceFor(Outcome::Unknown));
    }
}

// The register behind the service has codes of its own, for which the driver's message would be wrong.
void Registrar::tellFailure(ErrorInfo& error) const
{
    const ServiceAnswer& answer = transport.seen().status;
    error.code = answer.errorCode;
    if (!answer.errorText.isEmpty())
        error.message = answer.errorText;
}

void Registrar::noteError(ReceiptResult& result, const std::optional<ErrorInfo>& error) const
{
    result.error = error;
    if (result.error)
        result.error->code = transport.seen().lastErrorCode;
}

} // namespace frhost
