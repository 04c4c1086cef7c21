#pragma once

#include "till/journal/journal.h"
#include "till/receipts/receiptqueue.h"
#include "till/sale/result.h"

#include <exception>
#include <functional>
#include <optional>

namespace till {

class ObservingTransport;

/// Keeps the journal while receipts are sold: records each one before its first byte is sent, keeps back one
/// whose id the service may have with other content, and records what became of it.
///
/// For each receipt: begin(), the sale, concluded(), and after its result was reported check().
class SaleJournal
{
public:
    using Warn = std::function<void(const QString& warning)>;

    /// All are borrowed. Without a journal this does nothing.
    SaleJournal(Journal* usedJournal, ObservingTransport& usedTransport, Warn warning);
    ~SaleJournal();
    Q_DISABLE_COPY_MOVE(SaleJournal)

    /// The receipt that is sold next.
    void begin(const QueuedReceipt& queued);

    /// What was known of this receipt before; none until the transport has asked, and for one that is new.
    [[nodiscard]] std::optional<JournalRecord> earlier() const;

    /// Whether the journal has a record of this receipt's id that forbids its sale, or that tells its
    /// outcome. Throws JournalError, as the transport's gate does.
    [[nodiscard]] bool knows(const QUrl& url, const QByteArray& body);

    /// Records the result; returns it with what the journal knows. Throws JournalError when the receipt could
    /// not be recorded beforehand and was therefore not sent.
    [[nodiscard]] ReceiptResult concluded(ReceiptResult result);

    /// Throws JournalError when the result could not be recorded.
    void check() const;

private:
    void admit(const QUrl& url, const QByteArray& body);
    void record(const ReceiptResult& result);
    [[nodiscard]] ReceiptResult weighed(ReceiptResult result, const JournalRecord& earlier) const;
    [[nodiscard]] std::optional<ReceiptState> stateOf(const ReceiptResult& result) const;

    Journal* journal;
    ObservingTransport& transport;
    Warn warn;

    // Of the receipt that is being sold.
    QString file;
    int line = 0;
    std::optional<JournalClaim> claim;
    std::exception_ptr failure;
    // The id of the last receipt whose twin was told.
    QString warnedOf;
};

} // namespace till
