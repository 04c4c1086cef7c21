#include "hostcli/commands/batch.h"

#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "hostcli/terminal/qrcode.h"
#include "hostcli/terminal/resultreport.h"
#include "hostcli/terminal/runreport.h"
#include "till/sale/failure.h"
#include "till/sale/registrar.h"
#include "till/sale/verdict.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"
#include "till/wire/observingtransport.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString qrOf(const ReceiptResult& result)
{
    return result.fiscal ? qrText(*result.fiscal) : QString();
}

} // namespace

QString outcomeSentence(const ReceiptResult& result)
{
    if (!result.outcome)
        return Text::tr("%1 was accepted by the service.").arg(result.id);
    switch (*result.outcome) {
    case Outcome::Registered:
        return Text::tr("%1 is registered.").arg(result.id);
    case Outcome::Incomplete:
        if (result.witness != Witness::Service)
            return Text::tr("%1 is registered according to the driver, which has not proved it; look at the "
                            "register's last documents.")
                .arg(result.id);
        return Text::tr("%1 is registered according to the service, which has not proved it; run again.")
            .arg(result.id);
    case Outcome::Refused:
        return Text::tr("%1 was refused.").arg(result.id);
    case Outcome::Unknown:
        break;
    }
    if (result.witness != Witness::Service && result.next == NextStep::None)
        return Text::tr("The outcome of %1 is unknown; look at the register's last documents.")
            .arg(result.id);
    return Text::tr("The outcome of %1 is unknown; run again.").arg(result.id);
}

Batch::Batch(const CommandLine& line, Output& usedOutput, ObservingTransport& usedTransport)
    : command(line.command)
    , json(line.json)
    , streams(line.streams)
    , wantsPictures(!line.qrDir.isEmpty())
    , pictures(line.qrDir)
    , output(usedOutput)
    , transport(usedTransport)
{
}

void Batch::setCount(int receipts)
{
    const std::scoped_lock lock(guard);
    count = receipts;
}

void Batch::expectAnother()
{
    const std::scoped_lock lock(guard);
    ++count;
}

void Batch::noteAttempt(const ReceiptResult& result)
{
    {
        const std::scoped_lock lock(guard);
        current.sent = current.sent || result.sent;
        current.uuid = result.uuid.isEmpty() ? current.uuid : result.uuid;
    }
    const QString cause = result.error ? result.error->message : QString();
    Console::instance().line(Text::tr("%1: %2. Trying again.").arg(result.id, cause));
}

QString Batch::begin(const QueuedReceipt& queued)
{
    const std::scoped_lock lock(guard);
    // Traffic of the receipt before must not be taken for this one's.
    transport.startReceipt();
    step = Step::Working;
    current = {};
    current.file = queued.file;
    current.line = queued.line;
    current.id = queued.receipt.id();
    facts = factsOf(queued.receipt);
    return u"[%1/%2] %3"_s.arg(QString::number(tally.done() + 1), QString::number(count), current.id);
}

bool Batch::finish(const ReceiptResult& result)
{
    {
        const std::scoped_lock lock(guard);
        step = Step::Reporting;
        current = result;
        tally.add(result.outcome);
        hasSent = hasSent || result.sent;
        raise(exitCodeOf(result.outcome));
        const bool isLast = streams ? result.endsRun && result.next == NextStep::Account
                                    : result.endsRun || result.outcome == Outcome::Unknown;
        if (isLast)
            endBefore(result.next);
    }
    write(result);
    writePicture(result);
    const std::scoped_lock lock(guard);
    step = Step::BetweenReceipts;
    return goesOn && output.error().isEmpty();
}

void Batch::stop(const Error& error)
{
    const RunFailure failure = failureOf(error, hasSent);
    {
        const std::scoped_lock lock(guard);
        step = Step::BetweenReceipts;
        raise(exitCodeOf(error.problem()));
        endBefore(failure.next);
    }
    Console::instance().line(error.message(), Urgency::Error);
    if (json)
        output.write(toJsonLine(failure));
}

bool Batch::skip(const QueuedReceipt& queued)
{
    ReceiptResult result;
    result.file = queued.file;
    result.line = queued.line;
    result.id = queued.receipt.id();
    result.outcome = Outcome::Unknown;
    result.next = nextOfRest;
    result.error = ErrorInfo{{}, std::nullopt, Text::tr("Not sent: the run ended before it")};
    return output.write(toJsonLine(result));
}

int Batch::doneCount()
{
    const std::scoped_lock lock(guard);
    return tally.done();
}

ExitCode Batch::end()
{
    const std::scoped_lock lock(guard);
    step = Step::Ended;
    if (tally.done() != count)
        raise(ExitCode::LocalFailure);
    summarize();
    return status;
}

void Batch::interrupt()
{
    const std::scoped_lock lock(guard);
    const auto held = transport.hold();
    const bool isLastDone = step == Step::BetweenReceipts && count > 0 && tally.done() == count;
    if (step == Step::Ended || (isLastDone && !streams))
        return;
    if (isLastDone) {
        // Between two receipts of a stream, nothing is lost.
        Console::instance().line(Text::tr("Interrupted."));
        summarize();
        endInterrupted(status);
    }
    raise(ExitCode::Unknown);
    goesOn = false;
    Console::instance().dropStatus();
    Console::instance().line(Text::tr("Interrupted. %1").arg(whatIsKnown()).trimmed());
    if (step == Step::Reporting || hasAnswer())
        return;
    giveUpReceipt();
    summarize();
    endInterrupted(status);
}

SaleVerdict Batch::judged() const
{
    return isSell() ? judgeSale(transport.seen(), facts, false)
                    : judgeSending(transport.seen(), facts.id, false);
}

// Whether the service's final answer is there, and the driver is about to return with it.
bool Batch::hasAnswer() const
{
    constexpr std::array final{
        SaleVerdict::Registered, SaleVerdict::Incomplete, SaleVerdict::ForeignId, SaleVerdict::Accepted};
    return step == Step::Working && std::ranges::find(final, judged()) != final.end();
}

QString Batch::whatIsKnown() const
{
    if (step == Step::Reporting)
        return outcomeSentence(current);
    if (step != Step::Working)
        return tally.done() == 0 ? Text::tr("Nothing was sent.") : QString();
    if (hasAnswer()) {
        ReceiptResult result = current;
        result.outcome = conclusionOf(judged()).outcome;
        return outcomeSentence(result);
    }
    if (transport.seen().isLocal)
        return Text::tr("%1 was given to the register, its outcome is unknown; look at the register's last "
                        "documents.")
            .arg(current.id);
    if (current.sent || transport.seen().receiptSent)
        return Text::tr(
            "%1 was sent, its outcome is unknown; run again: the service does not register an id twice.")
            .arg(current.id);
    return Text::tr("%1 was not sent; run again.").arg(current.id);
}

// What keeps the rest from being sent has to be corrected first, unless it may pass by itself.
void Batch::endBefore(NextStep next)
{
    goesOn = false;
    nextOfRest = next == NextStep::Account ? NextStep::Account : NextStep::Rerun;
}

void Batch::raise(ExitCode to)
{
    status = std::max(status, to);
}

void Batch::giveUpReceipt()
{
    if (step != Step::Working)
        return;
    const WireRecord& seen = transport.seen();
    if (!seen.registration.uuid.isEmpty())
        current.uuid = seen.registration.uuid;
    current.outcome = Outcome::Unknown;
    current.sent = current.sent || seen.receiptSent;
    current.next = seen.isLocal ? NextStep::None : NextStep::Rerun;
    current.error = ErrorInfo{{}, std::nullopt,
        seen.isLocal   ? Text::tr("Interrupted while waiting for the register")
        : current.sent ? Text::tr("Interrupted while waiting for the service")
                       : Text::tr("Interrupted before it was sent")};
    if (current.sent)
        ++tally.unknown;
    write(current);
}

void Batch::write(const ReceiptResult& result)
{
    report(result, json, output);
}

void Batch::writePicture(const ReceiptResult& result)
{
    QString failure = pictures.write(result.id, qrOf(result));
    if (wantsPictures && result.fiscal && qrOf(result).isEmpty())
        failure =
            Text::tr("%1: there is no picture of the QR code, because the service's answer has no valid "
                     "time. The receipt is registered.")
                .arg(result.id);
    if (failure.isEmpty())
        return;
    {
        const std::scoped_lock lock(guard);
        raise(ExitCode::LocalFailure);
    }
    Console::instance().line(failure);
}

void Batch::summarize()
{
    if (json)
        output.write(toJsonLine(tally, isSell() ? u"registered"_s : u"accepted"_s, count, status));
    reportTotals(tally, isSell(), count);
    if (tally.done() < count)
        Console::instance().line(Text::tr("Receipts not sent: %1.").arg(count - tally.done()));
}

} // namespace frhost
