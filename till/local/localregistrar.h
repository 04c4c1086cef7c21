#pragma once

#include "host/records/fiscalinfo.h"
#include "till/journal/journal.h"
#include "till/receipts/receiptqueue.h"
#include "till/sale/result.h"

#include <QUrl>

#include <functional>

class AbstractFrDriver;

namespace till {

class LoadedRegister;
class SaleJournal;
class ObservingTransport;

/// The address under which the journal keeps the receipts of a register that has none of its own: the
/// plugin's name, the register's number and the port, if it has one. Throws Error without a name.
[[nodiscard]] QUrl localAddress(const QString& plugin, unsigned int number, const QString& port);
[[nodiscard]] QUrl localAddress(const LoadedRegister& fiscalRegister);

/// Registers receipts with a driver that is not a web service. Nobody but the driver can say what became of a
/// receipt, so its word is the evidence: checkClose() returned, and getFiscalInfo() has the storage, the
/// number and the sign of a new document with the receipt's total. Less is incomplete.
///
/// An exception of checkClose() says nothing about the receipt, whatever its class; only a driver that
/// confirms the id by isLastCheckWithNumber() settles it. And the register knows no ids: what keeps a receipt
/// from being registered twice is the journal alone. A receipt that it knows is never handed over again.
///
/// A driver registers nothing before checkClose(), so the record is made right before it: a program that ends
/// while the receipt is being handed over leaves none, and the file may be run again. What such a run has
/// left open is cancelled before the first receipt of the next one.
class LocalRegistrar
{
public:
    using Warn = std::function<void(const QString& warning)>;

    /// All are borrowed. The transport's gate is asked before each receipt, although nothing of it passes
    /// through the transport.
    LocalRegistrar(AbstractFrDriver& usedDriver, QUrl address, ObservingTransport& usedTransport,
        SaleJournal& usedJournal, Warn warning);

    /// Registers a receipt; blocks until the driver has closed it. Throws nothing that a driver may throw.
    [[nodiscard]] ReceiptResult sell(const QueuedReceipt& queued);

private:
    [[nodiscard]] ReceiptResult sold(const QueuedReceipt& queued);
    [[nodiscard]] ReceiptResult handOverAndClose(const QueuedReceipt& queued);
    [[nodiscard]] ReceiptResult closed(const QueuedReceipt& queued, const FiscalInfo& before);
    void admit(const Receipt& receipt);
    void cancel() const;
    [[nodiscard]] ReceiptResult repeated(const QueuedReceipt& queued, const JournalRecord& record);
    [[nodiscard]] ReceiptResult byEvidence(const QueuedReceipt& queued, const FiscalInfo& before);
    [[nodiscard]] FiscalInfo fiscalInfo() const;
    [[nodiscard]] bool isLastDocument(const QString& id) const;
    void finishPrinting(const QString& id) const;

    AbstractFrDriver& driver;
    QUrl fiscalRegister;
    ObservingTransport& transport;
    SaleJournal& journal;
    Warn warn;
    bool isFirst = true;
};

} // namespace till
