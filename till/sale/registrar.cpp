#include "till/sale/registrar.h"

#include "host/abstractfrdriver.h"
#include "host/log/secrets.h"
#include "host/vposfrdriver.h"
#include "till/device/loadedregister.h"
#include "till/sale/attempt.h"
#include "till/sale/obstacle.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"
#include "till/wire/observingtransport.h"

#include <algorithm>
#include <array>
#include <thread>
#include <tuple>
#include <utility>

namespace till {

namespace {

// Whether the service did not answer last, and the transport has its words for it.
bool isSilent(const WireRecord& seen)
{
    return seen.lastAnswered == false && !seen.tokensRejected;
}

// After more, something else is wrong with the questions.
constexpr int mostRefusedQuestions = 20;

// Of the answer that came last; that a receipt is known already is not an error.
void addWordsOfService(ErrorInfo& error, const WireRecord& seen)
{
    const std::array answers{&seen.status, &seen.registration, &seen.token};
    const auto* found = std::ranges::find_if(answers, [&](const ServiceAnswer* answer) {
        return answer->hasError && !(answer == &seen.registration && existedBefore(seen));
    });
    if (found == answers.end())
        return;
    addWords(error, **found);
}

} // namespace

void handOver(AbstractFrDriver& driver, const Receipt& receipt)
{
    driver.checkOpen(receipt.document);
    for (const FdRequisite& requisite : receipt.requisites) {
        // Known before the driver logs it.
        if (requisite.getTag() == buyerContact)
            hostruntime::secrets::addPersonal(requisite.getSourceData().toString());
        driver.setRequisite(requisite);
    }
    for (const FrPosition& position : receipt.positions)
        driver.checkAddPosition(position);
    driver.checkTotal();
    for (const FrPayment& payment : receipt.payments)
        driver.checkPay(payment);
}

ReceiptFacts factsOf(const Receipt& receipt)
{
    return {receipt.id(), receipt.total()};
}

Registrar::Registrar(LoadedRegister& usedRegister, ObservingTransport& usedTransport, Patience usedPatience)
    : fiscalRegister(usedRegister)
    , transport(usedTransport)
    , patience(usedPatience)
{
}

ReceiptResult Registrar::sell(const QueuedReceipt& queued)
{
    const Receipt& receipt = queued.receipt;
    Finding finding = repeatRefused(close(receipt), [&] { return closeAgain(receipt); });
    // The driver's interface names the document of a known id only when the receipt is sent once more.
    if (finding.verdict == SaleVerdict::Existing)
        finding = closeAgain(receipt);
    if (finding.verdict == SaleVerdict::Unfinished || finding.verdict == SaleVerdict::FailedOnce)
        finding = await(receipt, std::move(finding));
    return resultOf(queued, finding);
}

std::variant<ReceiptResult, AwaitedReceipt> Registrar::begin(const QueuedReceipt& queued)
{
    const Receipt& receipt = queued.receipt;
    transport.startReceipt();
    Finding finding;
    finding.error = attempted([&] { handOver(fiscalRegister.driver(), receipt); });
    if (finding.error)
        finding.verdict = judgeSale(transport.seen(), factsOf(receipt), true);
    else
        finding = repeatRefused(closeAgain(receipt), [&] { return closeAgain(receipt); });
    if (finding.verdict == SaleVerdict::Existing)
        finding = closeAgain(receipt);
    if (finding.verdict != SaleVerdict::Unfinished)
        return resultOf(queued, finding);
    return AwaitedReceipt{
        queued, transport.memory(), std::move(finding.error), {}, ofRegister().beforeQuestion, 0};
}

std::optional<ReceiptResult> Registrar::ask(AwaitedReceipt& awaited)
{
    const Receipt& receipt = awaited.queued.receipt;
    transport.resume(awaited.memory);
    transport.startQuestion();
    const QString uuid = transport.seen().registration.uuid;
    if (auto thrown = attempted([&] { std::ignore = fiscalRegister.service().getDocumentInfo(uuid); }))
        awaited.error = std::move(thrown);
    // Whoever asks slows down. That is not the silence after which the outcome counts as unknown.
    const bool isRefused = transport.seen().status.errorCode == ServiceCode::BadRequest;
    awaited.refusedQuestions = isRefused ? awaited.refusedQuestions + 1 : 0;
    if (isRefused && awaited.refusedQuestions < mostRefusedQuestions) {
        awaited.memory = transport.memory();
        return std::nullopt;
    }
    const DocumentState state = judgeStatus(transport.seen(), receipt.id());
    if (const auto pause = awaited.wait.after(state, ofRegister())) {
        awaited.pause = *pause;
        awaited.memory = transport.memory();
        return std::nullopt;
    }
    return resultOf(
        awaited.queued, {verdictOf(state, transport.seen(), factsOf(receipt)), std::move(awaited.error)});
}

Patience Registrar::ofRegister() const
{
    Patience own = patience;
    own.beforeQuestion = fiscalRegister.requestInterval();
    return own;
}

ReceiptResult Registrar::send(const QueuedReceipt& queued)
{
    return resultOf(
        queued, repeatRefused(submit(queued.receipt), [&] { return submitAgain(queued.receipt); }));
}

Registrar::Finding Registrar::close(const Receipt& receipt)
{
    transport.startReceipt();
    Finding finding;
    finding.error = attempted([&] {
        handOver(fiscalRegister.driver(), receipt);
        fiscalRegister.driver().checkClose(receipt.document);
    });
    finding.verdict = judgeSale(transport.seen(), factsOf(receipt), finding.error.has_value());
    return finding;
}

// Sends what has already been handed over.
Registrar::Finding Registrar::closeAgain(const Receipt& receipt)
{
    Finding finding;
    finding.error =
        attempted([&] { std::ignore = fiscalRegister.service().documentClose(receipt.document); });
    finding.verdict = judgeSale(transport.seen(), factsOf(receipt), finding.error.has_value());
    return finding;
}

Registrar::Finding Registrar::submit(const Receipt& receipt)
{
    transport.startReceipt();
    if (auto error = attempted([&] { handOver(fiscalRegister.driver(), receipt); }))
        return {judgeSending(transport.seen(), receipt.id(), true), std::move(error)};
    return submitAgain(receipt);
}

Registrar::Finding Registrar::submitAgain(const Receipt& receipt)
{
    Finding finding;
    finding.error =
        attempted([&] { std::ignore = fiscalRegister.service().documentClose(receipt.document); });
    finding.verdict = judgeSending(transport.seen(), receipt.id(), finding.error.has_value());
    return finding;
}

Registrar::Finding Registrar::await(const Receipt& receipt, Finding finding)
{
    const auto judge = [&] { return judgeStatus(transport.seen(), receipt.id()); };
    const DocumentState state = awaitNews(
        transport.seen().registration.uuid, finding.verdict == SaleVerdict::FailedOnce, judge, finding.error);
    finding.verdict = verdictOf(state, transport.seen(), factsOf(receipt));
    return finding;
}

DocumentState Registrar::awaitNews(const QString& uuid, bool hasFailedOnce,
    const std::function<DocumentState()>& judge, std::optional<ErrorInfo>& error) const
{
    bool isAnswered = hasFailedOnce;
    const auto ask = [&] {
        if (std::exchange(isAnswered, false))
            return DocumentState::Failed;
        transport.startQuestion();
        if (auto thrown = attempted([&] { std::ignore = fiscalRegister.service().getDocumentInfo(uuid); }))
            error = std::move(thrown);
        return judge();
    };
    const auto pause = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
    return awaitDocument(ask, pause, ofRegister());
}

// The question names the document, as the answer to the receipt does otherwise; and the receipt is what the
// answer says.
ReceiptResult Registrar::collect(const QString& uuid)
{
    transport.startReceipt();
    const auto seen = [&] {
        WireRecord record = transport.seen();
        record.registration.uuid = uuid;
        return record;
    };
    const auto judge = [&] { return judgeStatus(seen(), transport.seen().status.externalId); };
    Finding finding;
    const DocumentState state = awaitNews(uuid, false, judge, finding.error);
    const ServiceAnswer answer = transport.seen().status;
    QueuedReceipt asked;
    asked.receipt.document.setInternalIdentifier(answer.externalId);
    asked.receipt.payments << FrPayment(0, totalIn(answer.payload).value_or(0));
    finding.verdict = verdictOf(state, seen(), factsOf(asked.receipt));
    ReceiptResult result = resultOf(asked, finding);
    result.uuid = uuid;
    if (result.outcome == Outcome::Unknown)
        result.advice = Text::tr("Ask again later with the same command: it sends nothing.");
    if (answer.errorCode == ServiceCode::UnknownDocument) {
        result.next = NextStep::Correct;
        result.advice = Text::tr(
            "Check the uuid and groupCode: the service knows a uuid for 32 days, and in its group alone.");
    }
    return result;
}

Registrar::Finding Registrar::repeatRefused(Finding finding, const std::function<Finding()>& sendAgain) const
{
    for (int i = 0; i < patience.repeatedRefusals && finding.verdict == SaleVerdict::RefusedOnce; ++i) {
        std::this_thread::sleep_for(patience.beforeRepetition);
        finding = sendAgain();
    }
    const auto code = transport.seen().registration.errorCode;
    if (finding.verdict == SaleVerdict::RefusedOnce && code)
        finding.verdict = confirmed(*code);
    return finding;
}

ReceiptResult Registrar::resultOf(const QueuedReceipt& queued, const Finding& finding) const
{
    const WireRecord& seen = transport.seen();
    const Conclusion conclusion = conclusionOf(finding.verdict);
    ReceiptResult result;
    result.file = queued.file;
    result.line = queued.line;
    result.id = queued.receipt.id();
    result.uuid = seen.registration.uuid;
    result.outcome = conclusion.outcome;
    result.verdict = finding.verdict;
    result.endsRun = conclusion.endsRun;
    result.sent = seen.receiptSent;
    result.next = nextStepOf(finding.verdict, seen.registration.errorCode);
    const bool isRegistered = finding.verdict == SaleVerdict::Registered;
    const bool isGood = isRegistered || finding.verdict == SaleVerdict::Accepted;
    if (isGood || finding.verdict == SaleVerdict::Incomplete)
        result.recovered = existedBefore(seen);
    if (isRegistered) {
        const FiscalPayload payload = readPayload(seen.status.payload, queued.receipt.taxSystem());
        result.fiscal = payload.info;
        result.receiptUrl = payload.receiptUrl;
        result.compared = result.recovered ? Comparison::Total : Comparison::None;
    }
    if (!isGood)
        result.error = errorOf(queued.receipt, finding);
    result.advice = adviceFor(finding.verdict);
    return result;
}

QString Registrar::adviceFor(SaleVerdict verdict) const
{
    const WireRecord& seen = transport.seen();
    const QString advice = conclusionOf(verdict).advice;
    const bool isRefused = seen.receiptSent && seen.registration.errorCode;
    if (isRefused && verdict == SaleVerdict::AccountRefused)
        return accountAdvice(*seen.registration.errorCode);
    if (isRefused && verdict == SaleVerdict::Refused)
        return refusalAdvice(*seen.registration.errorCode);
    const bool isOpen = conclusionOf(verdict).outcome == Outcome::Unknown;
    return isOpen && isSilent(seen) ? advice + u' ' + obstacleIn(transport.failure()).advice : advice;
}

ErrorInfo Registrar::errorOf(const Receipt& receipt, const Finding& finding) const
{
    const WireRecord& seen = transport.seen();
    const QString message = conclusionOf(finding.verdict).message;
    ErrorInfo error = finding.error.value_or(ErrorInfo{{}, seen.lastErrorCode, message});
    const Evidence evidence = evidenceIn(seen.status, factsOf(receipt));
    switch (finding.verdict) {
    case SaleVerdict::NotSent:
        if (isSilent(seen))
            error.message =
                Text::tr("Not sent, no connection: %1").arg(obstacleIn(transport.failure()).cause);
        else if (finding.error && !finding.error->message.isEmpty())
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
    case SaleVerdict::Incomplete:
        error = {{}, std::nullopt, describe(evidence, factsOf(receipt))};
        break;
    case SaleVerdict::ForeignId:
        error = {{}, seen.registration.errorCode,
            Text::tr("The id already belongs to another receipt, registered with the total %1 instead of %2")
                .arg(roubles(evidence.otherTotal.value_or(0)), roubles(receipt.total()))};
        break;
    default:
        if (seen.tokensRejected)
            error.message = Text::tr("The service does not accept the tokens that it issues");
        else if (isSilent(seen))
            error.message =
                Text::tr("No answer from the service: %1").arg(obstacleIn(transport.failure()).cause);
        else if (existedBefore(seen) && error.code == seen.registration.errorCode)
            // That the id is known is not what leaves the outcome open.
            error.message = message;
        break;
    }
    if (finding.verdict != SaleVerdict::Incomplete && finding.verdict != SaleVerdict::ForeignId)
        addWordsOfService(error, seen);
    preferWordsOfService(error);
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
