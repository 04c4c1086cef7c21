#include "till/journal/journal.h"

#include "till/journal/journalerror.h"
#include "till/journal/journalfile.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// "frhj", so that the file of another program is not taken for a journal.
constexpr int applicationId = 0x6672686a;

// The service answers questions about a document for 32 days; the rest allows for clocks that differ and for
// a till that was switched off over a holiday.
constexpr int maxAge = 40 * 24 * 3600;
// A shift may not last longer, and whoever sends a sale again under a new id does so in the same shift.
constexpr int maxTwinAge = 24 * 3600;

const char* const schema[] = {
    "CREATE TABLE registers ("
    " number INTEGER PRIMARY KEY,"
    " address TEXT NOT NULL UNIQUE)",
    "CREATE TABLE receipts ("
    " number INTEGER PRIMARY KEY,"
    " register INTEGER NOT NULL REFERENCES registers,"
    " id TEXT NOT NULL,"
    " digest BLOB NOT NULL,"
    " state TEXT NOT NULL,"
    " attempt INTEGER NOT NULL,"
    " file TEXT NOT NULL,"
    " line INTEGER NOT NULL,"
    " sent INTEGER NOT NULL," // seconds since 1970, as all times
    " changed INTEGER NOT NULL,"
    " uuid TEXT NOT NULL DEFAULT '',"
    " storage TEXT,"
    " document INTEGER,"
    " sign TEXT,"
    " total REAL,"
    " UNIQUE (register, id))",
    "CREATE INDEX unproven ON receipts (register, digest) WHERE state IN ('sent', 'unknown', 'incomplete')",
    "CREATE INDEX age ON receipts (sent)",
};

// Returns the file, which exists from then on.
QString created(const QString& file)
{
    createPrivateFile(file);
    return file;
}

JournalRecord recordIn(const QSqlQuery& row)
{
    JournalRecord record;
    record.id = row.value(0).toString();
    record.state = receiptStateOf(row.value(1).toString());
    record.digest = row.value(2).toByteArray();
    record.attempt = row.value(3).toInt();
    record.file = row.value(4).toString();
    record.line = row.value(5).toInt();
    record.sent = QDateTime::fromSecsSinceEpoch(row.value(6).toLongLong());
    record.uuid = row.value(7).toString();
    return record;
}

} // namespace

Journal::Journal(const QString& file, std::chrono::milliseconds patience)
    : fileName(created(file))
    , database(file, {applicationId, {schema}}, patience,
          [file](const QString& reason, Fault /*fault*/) { throw JournalError(file, reason); })
{
}

JournalClaim Journal::claim(const ComposedReceipt& receipt, const QString& fromFile, int fromLine)
{
    JournalClaim claim;
    claim.receipt = receipt;
    database.transaction([&] {
        const auto known = find(receipt.fiscalRegister, receipt.id);
        claim.attempt = known ? known->attempt + 1 : 1;
        const bool mayBeThere = known && known->state != ReceiptState::Refused;
        if (mayBeThere && known->digest != receipt.digest) {
            claim.conflict = known;
            return;
        }
        claim.twin =
            firstOf("address = ? AND digest = ? AND state IN ('sent', 'unknown', 'incomplete') AND id <> ?"
                    " AND sent > unixepoch() - ? ORDER BY sent DESC",
                {receipt.fiscalRegister, receipt.digest, receipt.id, maxTwinAge});
        if (mayBeThere) {
            claim.earlier = known;
            database.change("UPDATE receipts SET attempt = ?, changed = unixepoch()"
                            " WHERE register = (SELECT number FROM registers WHERE address = ?) AND id = ?",
                {claim.attempt, receipt.fiscalRegister, receipt.id});
        } else {
            insert(claim, fromFile, fromLine);
        }
    });
    return claim;
}

// Replaces the record of a receipt that was refused.
void Journal::insert(const JournalClaim& claim, const QString& fromFile, int fromLine)
{
    const auto& [fiscalRegister, id, digest] = claim.receipt;
    database.change("INSERT OR IGNORE INTO registers (address) VALUES (?)", {fiscalRegister});
    database.change(
        "INSERT OR REPLACE INTO receipts"
        " (register, id, digest, state, attempt, file, line, sent, changed)"
        " SELECT number, ?, ?, 'sent', ?, ?, ?, unixepoch(), unixepoch() FROM registers WHERE address = ?",
        {id, digest, claim.attempt, fromFile, fromLine, fiscalRegister});
}

void Journal::conclude(const JournalClaim& claim, ReceiptState state, const QString& uuid,
    const std::optional<JournalEvidence>& evidence)
{
    const ComposedReceipt& receipt = claim.receipt;
    database.transaction([&] {
        const auto record = find(receipt.fiscalRegister, receipt.id);
        if (!record || record->digest != receipt.digest || !givesWay(record->state, state))
            return;
        // A later attempt is under way, and only what the service has said of the receipt itself holds for
        // it.
        if (record->attempt != claim.attempt && !isProven(state))
            return;
        database.change(
            "UPDATE receipts SET state = ?, uuid = coalesce(nullif(?, ''), uuid), changed = unixepoch()"
            " WHERE register = (SELECT number FROM registers WHERE address = ?) AND id = ?",
            {nameOf(state), uuid.isNull() ? u""_s : uuid, receipt.fiscalRegister, receipt.id});
        if (evidence)
            database.change("UPDATE receipts SET storage = ?, document = ?, sign = ?, total = ?"
                            " WHERE register = (SELECT number FROM registers WHERE address = ?) AND id = ?",
                {evidence->storage, evidence->document, evidence->sign, evidence->total,
                    receipt.fiscalRegister, receipt.id});
    });
}

void Journal::withdraw(const JournalClaim& claim)
{
    if (claim.earlier)
        return;
    database.change("DELETE FROM receipts WHERE register = (SELECT number FROM registers WHERE address = ?)"
                    " AND id = ? AND digest = ? AND attempt = ? AND state = 'sent'",
        {claim.receipt.fiscalRegister, claim.receipt.id, claim.receipt.digest, claim.attempt});
}

std::optional<JournalRecord> Journal::find(const QString& fiscalRegister, const QString& id)
{
    return firstOf("address = ? AND id = ?", {fiscalRegister, id});
}

std::optional<JournalRecord> Journal::firstOf(const char* condition, const QVariantList& values)
{
    const QByteArray statement =
        QByteArray("SELECT id, state, digest, attempt, file, line, sent, uuid FROM receipts"
                   " JOIN registers ON registers.number = receipts.register WHERE ") +
        condition + " LIMIT 1";
    QSqlQuery row = database.query(statement.constData(), values);
    return row.next() ? std::optional(recordIn(row)) : std::nullopt;
}

// In small batches, each by itself, so that other processes get their turn. Those of a local register stay:
// no service knows their ids, and without its record a receipt would be registered again.
void Journal::removeOld(const QDateTime& serviceTime)
{
    if (!serviceTime.isValid())
        return;
    // Where the clocks differ, nothing is old that is not old by both.
    const QDateTime now = std::min(serviceTime, QDateTime::currentDateTimeUtc());
    while (database.change("DELETE FROM receipts WHERE number IN"
                           " (SELECT number FROM receipts WHERE sent < ? AND register NOT IN"
                           " (SELECT number FROM registers WHERE address LIKE 'register:%')"
                           " LIMIT 500)",
               {now.toSecsSinceEpoch() - maxAge}) > 0) {
    }
}

} // namespace till
