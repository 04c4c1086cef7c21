#include "hostcli/commands.h"
#include "hostcli/console.h"
#include "hostcli/fiscalpayload.h"
#include "hostcli/qrcode.h"
#include "hostcli/qrpictures.h"
#include "hostcli/registrar.h"
#include "hostcli/resultreport.h"
#include "hostcli/session.h"
#include "hostcli/text.h"

namespace frhost {

namespace {

struct Tally
{
    int good = 0;
    int refused = 0;
    int unknown = 0;
    bool pictureFailed = false;

    [[nodiscard]] int done() const { return good + refused + unknown; }
    [[nodiscard]] ExitCode code() const
    {
        if (unknown > 0)
            return ExitCode::Unknown;
        if (refused > 0)
            return ExitCode::Refused;
        return pictureFailed ? ExitCode::Usage : ExitCode::Success;
    }
    void add(const ReceiptResult& result)
    {
        if (result.outcome == Outcome::Refused)
            ++refused;
        else if (result.outcome == Outcome::Unknown)
            ++unknown;
        else
            ++good;
    }
};

QString qrOf(const ReceiptResult& result)
{
    return result.fiscal ? qrText(*result.fiscal) : QString();
}

QString toTerminal(const ReceiptResult& result)
{
    return toText(result) + QrCode(qrOf(result)).halfBlocks();
}

void report(const ReceiptResult& result, bool json, Output& output)
{
    const QByteArray text = json                  ? toJsonLine(result)
                            : output.isTerminal() ? toTerminal(result).toUtf8()
                                                  : toText(result).toUtf8();
    // An outcome is never lost: where the output takes nothing, it goes to the console.
    if (!output.write(text))
        Console::instance().line(QString::fromUtf8(text).trimmed());
    if (!result.advice.isEmpty())
        Console::instance().line(
            QStringLiteral("%1: %2. %3")
                .arg(result.id, result.error ? result.error->message : QString(), result.advice));
}

void summarize(const Tally& tally, int count, Command command)
{
    if (count > 1) {
        const QString text = command == Command::Sell
                                 ? Text::tr("Receipts: %1. Registered: %2, refused: %3, unknown: %4.")
                                 : Text::tr("Receipts: %1. Accepted: %2, refused: %3, unknown: %4.");
        Console::instance().line(text.arg(QString::number(count), QString::number(tally.good),
            QString::number(tally.refused), QString::number(tally.unknown)));
    }
    if (tally.done() < count)
        Console::instance().line(Text::tr("Receipts not sent: %1.").arg(count - tally.done()));
}

} // namespace

ExitCode submit(const CommandLine& line, Output& output)
{
    Session session(line);
    const QrPictures pictures(line.qrDir);
    ReceiptQueue queue(line.files);
    session.connect();
    Registrar registrar(session.fiscalRegister(), session.transport());
    Tally tally;
    queue.forEach([&](const QueuedReceipt& queued) {
        const QString id = queued.receipt.document.getInternalIdentifier();
        const ReceiptResult result = [&] {
            const ShownStatus status(
                QStringLiteral("[%1/%2] %3")
                    .arg(QString::number(tally.done() + 1), QString::number(queue.count()), id));
            return line.command == Command::Sell ? registrar.sell(queued) : registrar.send(queued);
        }();
        tally.add(result);
        report(result, line.json, output);
        if (const QString failure = pictures.write(result.id, qrOf(result)); !failure.isEmpty()) {
            tally.pictureFailed = true;
            Console::instance().line(failure);
        }
        return result.outcome != Outcome::Unknown && output.error().isEmpty();
    });
    summarize(tally, queue.count(), line.command);
    return tally.code();
}

} // namespace frhost
