#include "till/local/localregistrar.h"

#include "host/abstractfrdriver.h"
#include "till/device/loadedregister.h"
#include "till/error.h"
#include "till/sale/attempt.h"
#include "till/sale/registrar.h"
#include "till/sale/salejournal.h"
#include "till/text.h"
#include "till/wire/observingtransport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <tuple>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QJsonValue jsonOf(const FdRequisite& requisite)
{
    QJsonArray members;
    for (const FdRequisite& member : requisite.toMap())
        members.append(jsonOf(member));
    return QJsonArray{requisite.getTag(), requisite.getSourceData().toString(),
        QString::fromLatin1(requisite.getRawData().toHex()), members};
}

QJsonValue jsonOf(const FrPosition& position)
{
    QJsonArray requisites;
    for (const FdRequisite& requisite : position.getRequisites())
        requisites.append(jsonOf(requisite));
    return QJsonArray{position.getName(), position.getPriceWithDisc(), position.getCount(),
        position.getPossum(), position.getDiscsum(), position.getTaxCode(),
        static_cast<int>(position.getPaymentMethod()), static_cast<int>(position.getPaymentObject()),
        position.hasSupplierRequisites(), position.getExciseMark(), position.getMarkingCode(),
        static_cast<int>(position.getExciseMarkType()), requisites};
}

// All that the driver is given, for the journal to compare.
QByteArray contentOf(const Receipt& receipt)
{
    QJsonArray requisites;
    for (const FdRequisite& requisite : receipt.requisites)
        requisites.append(jsonOf(requisite));
    QJsonArray positions;
    for (const FrPosition& position : receipt.positions)
        positions.append(jsonOf(position));
    QJsonArray payments;
    for (const FrPayment& payment : receipt.payments)
        payments.append(QJsonArray{payment.type, payment.getSum()});
    const QJsonObject content{{u"external_id"_s, receipt.id()},
        {u"type"_s, receipt.document.getDocumentType()}, {u"requisites"_s, requisites},
        {u"positions"_s, positions}, {u"payments"_s, payments}};
    return QJsonDocument(content).toJson(QJsonDocument::Compact);
}

// What the fiscal data lacks as the proof of a new document with this total; empty when it lacks nothing.
QString flawIn(const FiscalInfo& info, const FiscalInfo& before, double total)
{
    QStringList missing;
    if (info.fnNumber.isEmpty())
        missing << u"fnNumber"_s;
    if (info.fiscalDocumentNumber <= 0)
        missing << u"fiscalDocumentNumber"_s;
    if (info.fiscalSign.isEmpty())
        missing << u"fiscalSign"_s;
    if (!missing.isEmpty())
        return Text::tr("The driver says that the receipt is registered, but returns no valid %1")
            .arg(missing.join(u", "_s));
    if (info.fnNumber == before.fnNumber && info.fiscalDocumentNumber == before.fiscalDocumentNumber)
        return Text::tr("The driver says that the receipt is registered, but returns the fiscal data of an "
                        "earlier document");
    if (!isTheSameSum(info.total, total))
        return Text::tr("The driver says that the receipt is registered, but with the total %1 instead of %2")
            .arg(roubles(info.total), roubles(total));
    return {};
}

bool isOfTheLine(const ErrorInfo& error)
{
    return error.type == "FrNoConnectionException"_L1 || error.type == "ComDriverException"_L1;
}

// Without a journal, running the file again would hand the receipt over again, so a person has to look first.
NextStep nextStepFor(SaleVerdict verdict)
{
    const bool needsALook = verdict == SaleVerdict::Unknown || verdict == SaleVerdict::Incomplete;
    return needsALook ? NextStep::None : nextStepOf(verdict, std::nullopt);
}

ReceiptResult resultOf(const QueuedReceipt& queued, SaleVerdict verdict)
{
    const Conclusion conclusion = conclusionOf(verdict);
    ReceiptResult result;
    result.file = queued.file;
    result.line = queued.line;
    result.id = queued.receipt.id();
    result.verdict = verdict;
    result.outcome = conclusion.outcome;
    result.advice = conclusion.advice;
    result.endsRun = conclusion.endsRun;
    result.next = nextStepFor(verdict);
    result.witness = Witness::Driver;
    return result;
}

ReceiptResult notHandedOver(const QueuedReceipt& queued, ErrorInfo error)
{
    const bool isUnreachable = isOfTheLine(error);
    ReceiptResult result = resultOf(queued, isUnreachable ? SaleVerdict::NotSent : SaleVerdict::Refused);
    if (isUnreachable)
        error.message = Text::tr("Not sent, no connection: %1").arg(error.message);
    result.error = std::move(error);
    return result;
}

ReceiptResult unknown(const QueuedReceipt& queued, ErrorInfo error)
{
    ReceiptResult result = resultOf(queued, SaleVerdict::Unknown);
    result.error = std::move(error);
    result.advice =
        Text::tr("It may or may not be registered. Look at the register's last documents: if the sale is "
                 "there, it is done; if it is not, sell it under a new id.");
    return result;
}

ReceiptResult incomplete(const QueuedReceipt& queued, const QString& flaw)
{
    ReceiptResult result = resultOf(queued, SaleVerdict::Incomplete);
    result.error = ErrorInfo{{}, std::nullopt, flaw};
    result.advice = Text::tr("Do NOT sell it again before you have looked at the register's last documents.");
    return result;
}

QString timeOf(const JournalRecord& record)
{
    return record.sent.toString(u"dd.MM.yyyy hh:mm:ss"_s);
}

QString encoded(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

QUrl localAddress(const QString& plugin, unsigned int number, const QString& port)
{
    if (plugin.isEmpty())
        throw Error(Problem::Setup,
            Text::tr("The plugin's metadata has no name, under which the journal would keep its receipts"));
    QStringList path{{}, encoded(plugin), QString::number(number)};
    if (!port.isEmpty())
        path << encoded(port);
    QUrl address;
    address.setScheme(u"register"_s);
    address.setPath(path.join(u'/') + u"/sell"_s, QUrl::TolerantMode);
    return address;
}

QUrl localAddress(const LoadedRegister& fiscalRegister)
{
    return localAddress(
        fiscalRegister.name(), fiscalRegister.number(), fiscalRegister.device().property("port").toString());
}

LocalRegistrar::LocalRegistrar(AbstractFrDriver& usedDriver, QUrl address, ObservingTransport& usedTransport,
    SaleJournal& usedJournal, Warn warning)
    : driver(usedDriver)
    , fiscalRegister(std::move(address))
    , transport(usedTransport)
    , journal(usedJournal)
    , warn(std::move(warning))
{
}

ReceiptResult LocalRegistrar::sell(const QueuedReceipt& queued)
{
    transport.startReceipt();
    ReceiptResult result = sold(queued);
    result.sent = transport.seen().receiptSent;
    return result;
}

ReceiptResult LocalRegistrar::sold(const QueuedReceipt& queued)
{
    bool isKnown = false;
    auto error = attempt([&] {
        isKnown = journal.knows(fiscalRegister, contentOf(queued.receipt));
        if (isKnown)
            admit(queued.receipt);
    });
    if (error)
        return notHandedOver(queued, std::move(*error));
    const auto known = journal.earlier();
    return known ? repeated(queued, *known) : handOverAndClose(queued);
}

void LocalRegistrar::admit(const Receipt& receipt)
{
    transport.admit(fiscalRegister, contentOf(receipt));
}

void LocalRegistrar::cancel() const
{
    std::ignore = attempt([&] { driver.checkCancel(); });
}

ReceiptResult LocalRegistrar::handOverAndClose(const QueuedReceipt& queued)
{
    const FiscalInfo before = fiscalInfo();
    if (std::exchange(isFirst, false))
        cancel();
    auto error = attempt([&] {
        handOver(driver, queued.receipt);
        admit(queued.receipt);
    });
    // Another process may have sold it in the meantime.
    const auto known = journal.earlier();
    if (!error && !known)
        return closed(queued, before);
    // The next receipt could not be opened beside a half one.
    cancel();
    return error ? notHandedOver(queued, std::move(*error)) : repeated(queued, *known);
}

ReceiptResult LocalRegistrar::closed(const QueuedReceipt& queued, const FiscalInfo& before)
{
    const Receipt& receipt = queued.receipt;
    transport.noteHandedOver();
    auto error = attempt([&] { driver.checkClose(receipt.document); });
    if (error && !isLastDocument(receipt.id()))
        return unknown(queued, std::move(*error));
    return byEvidence(queued, before);
}

ReceiptResult LocalRegistrar::repeated(const QueuedReceipt& queued, const JournalRecord& record)
{
    ReceiptResult result;
    if (record.state == ReceiptState::Registered) {
        result = resultOf(queued, SaleVerdict::Registered);
        result.witness = Witness::Journal;
    } else if (isLastDocument(queued.receipt.id())) {
        transport.noteHandedOver();
        result = byEvidence(queued, {});
    } else if (record.state == ReceiptState::Incomplete) {
        result = incomplete(queued,
            Text::tr(
                "The driver said on %1 that the receipt is registered, without proving it, and it was not "
                "given it again")
                .arg(timeOf(record)));
        result.witness = Witness::Journal;
    } else {
        return unknown(queued,
            {{}, std::nullopt,
                Text::tr("The register was given this receipt on %1 already, its outcome was not known, and "
                         "it was not given it again")
                    .arg(timeOf(record))});
    }
    result.recovered = true;
    return result;
}

ReceiptResult LocalRegistrar::byEvidence(const QueuedReceipt& queued, const FiscalInfo& before)
{
    const FiscalInfo info = fiscalInfo();
    finishPrinting(queued.receipt.id());
    if (const QString flaw = flawIn(info, before, queued.receipt.total()); !flaw.isEmpty())
        return incomplete(queued, flaw);
    ReceiptResult result = resultOf(queued, SaleVerdict::Registered);
    result.fiscal = info;
    return result;
}

FiscalInfo LocalRegistrar::fiscalInfo() const
{
    FiscalInfo info;
    std::ignore = attempt([&] { info = driver.getFiscalInfo(0, true); });
    return info;
}

bool LocalRegistrar::isLastDocument(const QString& id) const
{
    bool isLast = false;
    std::ignore = attempt([&] { isLast = driver.isLastCheckWithNumber(id); });
    return isLast;
}

// A receipt that could not be printed is registered all the same.
void LocalRegistrar::finishPrinting(const QString& id) const
{
    if (const auto error = attempt([&] { driver.checkWaitForPrint(); }))
        warn(Text::tr("%1: not printed: %2").arg(id, error->message));
}

} // namespace till
