#include "hostcli/commands/batch.h"

#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "hostcli/terminal/qrcode.h"
#include "hostcli/terminal/resultreport.h"
#include "till/sale/verdict.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"
#include "till/wire/observingtransport.h"

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

QString qrOf(const ReceiptResult& result)
{
    return result.fiscal ? qrText(*result.fiscal) : QString();
}

QString toTerminal(const ReceiptResult& result)
{
    return toText(result) + QrCode(qrOf(result)).halfBlocks();
}

QString whatIsKnown(const ReceiptResult& result)
{
    if (!result.outcome)
        return Text::tr("%1 was accepted by the service.").arg(result.id);
    switch (*result.outcome) {
    case Outcome::Registered:
        return Text::tr("%1 is registered.").arg(result.id);
    case Outcome::Refused:
        return Text::tr("%1 was refused.").arg(result.id);
    case Outcome::Unknown:
        break;
    }
    return Text::tr("The outcome of %1 is unknown, run again.").arg(result.id);
}

} // namespace

void Batch::Tally::add(const ReceiptResult& result)
{
    if (result.outcome == Outcome::Refused)
        ++refused;
    else if (result.outcome == Outcome::Unknown)
        ++unknown;
    else
        ++good;
}

Batch::Batch(const CommandLine& line, Output& usedOutput, ObservingTransport& usedTransport)
    : command(line.command)
    , json(line.json)
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

QString Batch::begin(const QueuedReceipt& queued)
{
    const std::scoped_lock lock(guard);
    // What was seen of the receipt before must not be told of this one.
    transport.startReceipt();
    current.emplace();
    current->file = queued.file;
    current->line = queued.line;
    current->id = queued.receipt.document.getInternalIdentifier();
    return u"[%1/%2] %3"_s.arg(QString::number(tally.done() + 1), QString::number(count), current->id);
}

bool Batch::finish(const ReceiptResult& result)
{
    {
        const std::scoped_lock lock(guard);
        tally.add(result);
        current = result;
        isKnown = true;
    }
    write(result);
    writePicture(result);
    const std::scoped_lock lock(guard);
    current.reset();
    isKnown = false;
    return result.outcome != Outcome::Unknown && output.error().isEmpty() && !isInterrupted;
}

ExitCode Batch::end()
{
    {
        const std::scoped_lock lock(guard);
        hasEnded = true;
    }
    summarize();
    if (isInterrupted || tally.unknown > 0)
        return ExitCode::Unknown;
    if (tally.refused > 0)
        return ExitCode::Refused;
    return pictureFailed ? ExitCode::Usage : ExitCode::Success;
}

void Batch::interrupt()
{
    const std::scoped_lock lock(guard);
    const auto held = transport.hold();
    if (hasEnded)
        return;
    isInterrupted = true;
    Console::instance().dropStatus();
    sayInterrupted();
    if (isKnown || isRegistered())
        return;
    giveUpReceipt();
    summarize();
    endInterrupted();
}

// Whether the service's answer is there, and the driver is about to return with it.
bool Batch::isRegistered() const
{
    if (!current)
        return false;
    const Exchange& seen = transport.seen();
    const SaleVerdict verdict = isSell() ? judgeSale(seen, current->id, false) : judgeSending(seen, false);
    return verdict == SaleVerdict::Registered;
}

void Batch::sayInterrupted() const
{
    const auto known = [&] {
        if (!current)
            return tally.done() == 0 ? Text::tr("Nothing was sent.") : QString();
        if (isKnown)
            return whatIsKnown(*current);
        if (isRegistered()) {
            ReceiptResult result = *current;
            if (isSell())
                result.outcome = Outcome::Registered;
            return whatIsKnown(result);
        }
        if (transport.seen().receiptSent)
            return Text::tr(
                "%1 was sent, outcome unknown, run again: the service does not register an id twice.")
                .arg(current->id);
        return Text::tr("%1 was not sent, run again.").arg(current->id);
    };
    Console::instance().line(Text::tr("Interrupted. %1").arg(known()).trimmed());
}

void Batch::giveUpReceipt()
{
    if (!current)
        return;
    const Exchange& seen = transport.seen();
    current->uuid = seen.registration.uuid;
    current->outcome = Outcome::Unknown;
    current->error = ErrorInfo{{}, std::nullopt,
        seen.receiptSent ? Text::tr("Interrupted while waiting for the service")
                         : Text::tr("Interrupted before it was sent")};
    if (seen.receiptSent)
        ++tally.unknown;
    write(*current);
}

void Batch::write(const ReceiptResult& result)
{
    const QByteArray text = json                  ? toJsonLine(result)
                            : output.isTerminal() ? toTerminal(result).toUtf8()
                                                  : toText(result).toUtf8();
    // An outcome is never lost: where the output takes nothing, it goes to the console.
    if (!output.write(text))
        Console::instance().line(QString::fromUtf8(text).trimmed());
    if (!result.advice.isEmpty())
        Console::instance().line(
            u"%1: %2. %3"_s.arg(result.id, result.error ? result.error->message : QString(), result.advice));
}

void Batch::writePicture(const ReceiptResult& result)
{
    const QString failure = pictures.write(result.id, qrOf(result));
    if (failure.isEmpty())
        return;
    pictureFailed = true;
    Console::instance().line(failure);
}

void Batch::summarize() const
{
    if (count > 1) {
        const QString text = isSell() ? Text::tr("Receipts: %1. Registered: %2, refused: %3, unknown: %4.")
                                      : Text::tr("Receipts: %1. Accepted: %2, refused: %3, unknown: %4.");
        Console::instance().line(text.arg(QString::number(count), QString::number(tally.good),
            QString::number(tally.refused), QString::number(tally.unknown)));
    }
    if (tally.done() < count)
        Console::instance().line(Text::tr("Receipts not sent: %1.").arg(count - tally.done()));
}

} // namespace frhost
