#include "hostcli/terminal/runreport.h"

#include "hostcli/terminal/appearance.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/qrcode.h"
#include "hostcli/terminal/resultreport.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString toTerminal(const ReceiptResult& result)
{
    const QString qr = result.fiscal ? qrText(*result.fiscal) : QString();
    const QString picture = showsPictures() ? QrCode(qr).halfBlocks() : QString();
    return toText(result, showsColours()) + picture;
}

QString causeAndAdvice(const ReceiptResult& result)
{
    QString cause = result.error ? result.error->message.trimmed() : QString();
    if (cause.isEmpty())
        return result.advice;
    // The service's own words may end like a sentence.
    if (!u".!?…"_s.contains(cause.back()))
        cause += u'.';
    return cause + u' ' + result.advice;
}

} // namespace

void Tally::add(std::optional<Outcome> outcome)
{
    switch (outcome.value_or(Outcome::Registered)) {
    case Outcome::Registered:
        ++good;
        return;
    case Outcome::Incomplete:
        ++incomplete;
        return;
    case Outcome::Refused:
        ++refused;
        return;
    case Outcome::Unknown:
        ++unknown;
    }
}

ExitCode exitCodeOf(std::optional<Outcome> outcome)
{
    switch (outcome.value_or(Outcome::Registered)) {
    case Outcome::Registered:
        break;
    case Outcome::Incomplete:
        return ExitCode::IncompleteEvidence;
    case Outcome::Refused:
        return ExitCode::Refused;
    case Outcome::Unknown:
        return ExitCode::Unknown;
    }
    return ExitCode::Success;
}

void report(const ReceiptResult& result, bool json, Output& output)
{
    const QByteArray text = json                  ? toJsonLine(result)
                            : output.isTerminal() ? toTerminal(result).toUtf8()
                                                  : toText(result).toUtf8();
    reportAs(text, result, output);
}

void reportAs(const QByteArray& text, const ReceiptResult& result, Output& output)
{
    // An outcome is never lost: where the output does not accept it, it goes to the console.
    if (!output.write(text))
        Console::instance().lines(QString::fromUtf8(text).trimmed());
    if (!result.advice.isEmpty())
        Console::instance().line(u"%1: %2"_s.arg(nameOf(result), causeAndAdvice(result)));
}

void reportTotals(const Tally& tally, bool isWaitedFor, int receipts)
{
    const Urgency urgency = tally.good == receipts ? Urgency::Notice : Urgency::Warning;
    if (receipts > 1) {
        const QString text = isWaitedFor ? Text::tr("Receipts: %1. Registered: %2, refused: %3, unknown: %4.")
                                         : Text::tr("Receipts: %1. Accepted: %2, refused: %3, unknown: %4.");
        Console::instance().line(text.arg(QString::number(receipts), QString::number(tally.good),
                                     QString::number(tally.refused), QString::number(tally.unknown)),
            urgency);
    }
    if (tally.incomplete > 0)
        Console::instance().line(Text::tr("Registered, evidence incomplete: %1.").arg(tally.incomplete));
}

QByteArray toJsonLine(const Tally& tally, const QString& good, int receipts, ExitCode status)
{
    const QJsonObject counts{{u"receipts"_s, receipts}, {good, tally.good},
        {u"incomplete"_s, tally.incomplete}, {u"refused"_s, tally.refused}, {u"unknown"_s, tally.unknown},
        {u"notSent"_s, receipts - tally.done()}, {u"exitStatus"_s, static_cast<int>(status)}};
    return QJsonDocument(QJsonObject{{u"summary"_s, counts}}).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace frhost
