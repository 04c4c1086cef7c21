#include "till/sale/registrar.h"

#include "host/abstractfrdriver.h"
#include "host/vposfrdriver.h"
#include "till/device/loadedregister.h"
#include "till/sale/attempt.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"
#include "till/wire/observingtransport.h"

#include <thread>
#include <tuple>

namespace till {

namespace {

QString roubles(double sum)
{
    return QString::number(sum, 'f', 2);
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

Registrar::Registrar(LoadedRegister& usedRegister, ObservingTransport& usedTransport)
    : fiscalRegister(usedRegister)
    , transport(usedTransport)
{
}

ReceiptResult Registrar::sell(const QueuedReceipt& queued)
{
    const Receipt& receipt = queued.receipt;
    Finding finding = close(receipt);
    if (finding.verdict == SaleVerdict::Existing)
        finding = lookUp(receipt, std::move(finding));
    if (finding.verdict == SaleVerdict::Unfinished)
        finding = await(receipt, std::move(finding));
    if (finding.existed)
        finding.verdict =
            compareTotals(finding.verdict, totalIn(transport.seen().status.payload), receipt.total());
    return resultOf(queued, finding);
}

ReceiptResult Registrar::send(const QueuedReceipt& queued)
{
    return resultOf(queued, submit(queued.receipt));
}

Registrar::Finding Registrar::close(const Receipt& receipt)
{
    transport.startReceipt();
    Finding finding;
    finding.error = attempted([&] {
        handOver(fiscalRegister.driver(), receipt);
        fiscalRegister.driver().checkClose(receipt.document);
    });
    finding.uuid = transport.seen().registration.uuid;
    finding.verdict = judgeSale(transport.seen(), receipt.id(), finding.error.has_value());
    return finding;
}

Registrar::Finding Registrar::submit(const Receipt& receipt)
{
    transport.startReceipt();
    Finding finding;
    finding.error = attempted([&] {
        handOver(fiscalRegister.driver(), receipt);
        std::ignore = fiscalRegister.service().documentClose(receipt.document);
    });
    const ServiceAnswer& answer = transport.seen().registration;
    finding.uuid = answer.uuid;
    finding.existed = answer.errorCode.has_value();
    finding.verdict = judgeSending(transport.seen(), finding.error.has_value());
    return finding;
}

// The driver's interface names the document of a known id only when the receipt is sent once more.
Registrar::Finding Registrar::lookUp(const Receipt& receipt, Finding finding)
{
    QString uuid;
    finding.error = attempted([&] { uuid = fiscalRegister.service().documentClose(receipt.document); });
    if (!uuid.isEmpty())
        finding.uuid = uuid;
    finding.existed = true;
    finding.verdict = finding.uuid.isEmpty() ? SaleVerdict::Unknown : SaleVerdict::Unfinished;
    return finding;
}

Registrar::Finding Registrar::await(const Receipt& receipt, Finding finding)
{
    const auto ask = [&] {
        if (auto error =
                attempted([&] { std::ignore = fiscalRegister.service().getDocumentInfo(finding.uuid); }))
            finding.error = std::move(error);
        return judgeStatus(transport.seen().status, receipt.id());
    };
    const auto pause = [&] { std::this_thread::sleep_for(fiscalRegister.requestInterval()); };
    finding.verdict = verdictOf(awaitDocument(ask, pause));
    return finding;
}

ReceiptResult Registrar::resultOf(const QueuedReceipt& queued, const Finding& finding) const
{
    const Conclusion conclusion = conclusionOf(finding.verdict);
    ReceiptResult result;
    result.file = queued.file;
    result.line = queued.line;
    result.id = queued.receipt.id();
    result.uuid = finding.uuid;
    result.outcome = conclusion.outcome;
    result.advice = conclusion.advice;
    if (finding.verdict == SaleVerdict::Registered) {
        const FiscalPayload payload =
            readPayload(transport.seen().status.payload, queued.receipt.taxSystem());
        result.fiscal = payload.info;
        result.receiptUrl = payload.receiptUrl;
    } else if (finding.verdict != SaleVerdict::Accepted) {
        result.error = errorOf(queued.receipt, finding);
        return result;
    }
    result.recovered = finding.existed;
    return result;
}

ErrorInfo Registrar::errorOf(const Receipt& receipt, const Finding& finding) const
{
    const WireRecord& seen = transport.seen();
    const QString message = conclusionOf(finding.verdict).message;
    ErrorInfo error = finding.error.value_or(ErrorInfo{{}, seen.lastErrorCode, message});
    switch (finding.verdict) {
    case SaleVerdict::NotSent:
        if (finding.error && !finding.error->message.isEmpty())
            error.message = Text::tr("Not sent, no connection: %1").arg(finding.error->message);
        else
            error.message = message;
        break;
    case SaleVerdict::Failed:
        // The register that the service uses has codes of its own, for which the driver's message would be
        // wrong.
        error.code = seen.status.errorCode;
        if (!seen.status.errorText.isEmpty())
            error.message = seen.status.errorText;
        break;
    case SaleVerdict::ForeignId:
        error = {{}, seen.registration.errorCode,
            Text::tr("The id already belongs to another receipt, registered with the total %1 instead of %2")
                .arg(roubles(totalIn(seen.status.payload).value_or(0)), roubles(receipt.total()))};
        break;
    default:
        break;
    }
    return error;
}

std::optional<ErrorInfo> Registrar::attempted(const std::function<void()>& step) const
{
    std::optional<ErrorInfo> error = attempt(step);
    if (error)
        error->code = transport.seen().lastErrorCode;
    return error;
}

} // namespace till
