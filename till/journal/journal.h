#pragma once

#include "till/database/database.h"
#include "till/journal/composedreceipt.h"
#include "till/journal/receiptstate.h"

#include <QDateTime>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <optional>

namespace till {

/// What the journal knows of one receipt.
struct JournalRecord
{
    QString id;
    ReceiptState state = ReceiptState::Sent;
    QByteArray digest;
    /// Counts the attempts to send it.
    int attempt = 1;
    /// Where the receipt was read from.
    QString file;
    int line = 0;
    /// When it was sent for the first time.
    QDateTime sent;
    /// Empty when the service has given none.
    QString uuid;
};

/// The service's proof that a receipt is registered.
struct JournalEvidence
{
    QString storage;
    qint64 document = 0;
    QString sign;
    double total = 0;
};

/// A receipt that this process is about to send.
struct JournalClaim
{
    ComposedReceipt receipt;
    /// Of this process; another one counts on.
    int attempt = 1;
    /// What was known of the same content under the same id before; none for a receipt that is new or that
    /// was refused before.
    std::optional<JournalRecord> earlier;
    /// The same content under another id, sent within a day and not proven to be registered.
    std::optional<JournalRecord> twin;
    /// Other content under the same id that the service may have. Then nothing was noted, and the receipt
    /// must not be sent.
    std::optional<JournalRecord> conflict;
};

/// One durable record for each receipt that was ever about to go on the wire, in a SQLite file that any
/// number of processes may use at once. All that returns is on the disk: it survives the loss of power.
///
/// Records are kept for 40 days at least, and those of a local register for good. Everything throws
/// JournalError when the file cannot be used.
class Journal
{
public:
    /// For how long other processes may keep the file locked.
    static constexpr std::chrono::milliseconds defaultPatience{10'000};

    /// Opens the file or creates it, readable by its owner alone. Its folder must exist.
    explicit Journal(const QString& file, std::chrono::milliseconds patience = defaultPatience);
    Q_DISABLE_COPY_MOVE(Journal)

    [[nodiscard]] QString file() const { return fileName; }

    /// Notes that the receipt is about to be sent, unless there is a conflict.
    [[nodiscard]] JournalClaim claim(const ComposedReceipt& receipt, const QString& fromFile, int fromLine);

    /// Notes what became of a claimed receipt, unless more is known already. An empty uuid changes nothing.
    void conclude(const JournalClaim& claim, ReceiptState state, const QString& uuid,
        const std::optional<JournalEvidence>& evidence);

    /// Takes a claim back: nothing of the receipt has reached the service.
    void withdraw(const JournalClaim& claim);

    /// Removes the records that are too old at this time, which the service has told; without a valid time
    /// none, because this machine's clock may be wrong.
    void removeOld(const QDateTime& serviceTime);

    /// What is known of an id at a register.
    [[nodiscard]] std::optional<JournalRecord> find(const QString& fiscalRegister, const QString& id);

private:
    void insert(const JournalClaim& claim, const QString& fromFile, int fromLine);
    [[nodiscard]] std::optional<JournalRecord> firstOf(const char* condition, const QVariantList& values);

    QString fileName;
    Database database;
};

} // namespace till
