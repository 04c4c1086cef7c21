#include "queue/store/store.h"

#include "queue/store/storeerror.h"
#include "till/database/privatefile.h"
#include "till/journal/composedreceipt.h"
#include "till/journal/journalfile.h"
#include "till/text.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

// "frhq".
constexpr int applicationId = 0x66726871;

// A finished receipt without its evidence cannot be written, whatever the program does. Times are
// milliseconds.
const char* const firstVersion[] = {
    "CREATE TABLE registers ("
    " number INTEGER PRIMARY KEY,"
    " address TEXT NOT NULL UNIQUE,"
    " trouble TEXT NOT NULL DEFAULT '',"
    " since INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE workers ("
    " number INTEGER PRIMARY KEY AUTOINCREMENT,"
    " name TEXT NOT NULL,"
    " seen INTEGER NOT NULL,"
    " ended INTEGER NOT NULL DEFAULT 0)",
    "CREATE INDEX alive ON workers (number) WHERE ended = 0",
    "CREATE TABLE receipts ("
    " number INTEGER PRIMARY KEY AUTOINCREMENT,"
    " register INTEGER NOT NULL REFERENCES registers,"
    " id TEXT NOT NULL,"
    " state TEXT NOT NULL DEFAULT 'queued',"
    " held INTEGER NOT NULL DEFAULT 0,"
    " attempt INTEGER NOT NULL DEFAULT 0,"
    " worker INTEGER NOT NULL DEFAULT 0,"
    " maybeSent INTEGER NOT NULL DEFAULT 0,"
    " fruitless INTEGER NOT NULL DEFAULT 0,"
    " due INTEGER NOT NULL DEFAULT 0,"
    " file TEXT NOT NULL,"
    " line INTEGER NOT NULL,"
    " text BLOB NOT NULL,"
    " digest BLOB NOT NULL,"
    " added INTEGER NOT NULL,"
    " changed INTEGER NOT NULL,"
    " uuid TEXT NOT NULL DEFAULT '',"
    " storage TEXT,"
    " document INTEGER,"
    " sign TEXT,"
    " total REAL,"
    " UNIQUE (register, id),"
    " CHECK (state IN ('queued', 'sent', 'unknown', 'incomplete', 'registered', 'failed', 'refused',"
    "  'cancelled')),"
    " CHECK ((state = 'sent') = (worker <> 0)),"
    " CHECK (state <> 'cancelled' OR maybeSent = 0),"
    " CHECK (state <> 'registered' OR (uuid <> '' AND storage IS NOT NULL AND document IS NOT NULL"
    "  AND sign IS NOT NULL AND total IS NOT NULL)))",
    "CREATE INDEX waiting ON receipts (register, due, number)"
    " WHERE held = 0 AND state IN ('queued', 'unknown', 'incomplete')",
    "CREATE INDEX underWay ON receipts (worker) WHERE state = 'sent'",
    "CREATE INDEX documents ON receipts (storage, document) WHERE storage IS NOT NULL",
    "CREATE TABLE events ("
    " number INTEGER PRIMARY KEY AUTOINCREMENT,"
    " at INTEGER NOT NULL,"
    " receipt INTEGER NOT NULL REFERENCES receipts,"
    " event TEXT NOT NULL,"
    " attempt INTEGER NOT NULL,"
    " worker INTEGER NOT NULL,"
    " detail BLOB)",
    "CREATE INDEX history ON events (receipt)",
    "CREATE INDEX results ON events (number) WHERE event = 'finished'",
    "CREATE INDEX counted ON events (event, at)",
    "CREATE TRIGGER eventsStay BEFORE UPDATE ON events BEGIN"
    " SELECT raise(ABORT, 'events are never altered'); END",
    "CREATE TRIGGER eventsLast BEFORE DELETE ON events"
    " WHEN EXISTS (SELECT 1 FROM receipts WHERE number = OLD.receipt) BEGIN"
    " SELECT raise(ABORT, 'events are never removed'); END",
};

QString created(const QString& file)
{
    if (const QString reason = till::makePrivateFile(file); !reason.isEmpty())
        throw StoreError(file, reason);
    return file;
}

// Of the file that is there now; empty where there is none.
QByteArray identityOf(const QString& file)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return QByteArray::number(static_cast<quint64>(status.st_dev)) + ':' +
           QByteArray::number(static_cast<quint64>(status.st_ino));
}

Entry entryIn(const QSqlQuery& row)
{
    Entry entry;
    entry.number = row.value(0).toLongLong();
    entry.id = row.value(1).toString();
    entry.state = stateOf(row.value(2).toString()).value_or(State::Unknown);
    entry.isHeld = row.value(3).toBool();
    entry.attempt = row.value(4).toInt();
    entry.maybeSent = row.value(5).toBool();
    entry.fruitless = row.value(6).toInt();
    entry.file = row.value(7).toString();
    entry.line = row.value(8).toInt();
    entry.text = row.value(9).toByteArray();
    entry.digest = row.value(10).toByteArray();
    entry.added = row.value(11).toLongLong();
    entry.changed = row.value(12).toLongLong();
    entry.uuid = row.value(13).toString();
    return entry;
}

} // namespace

Store::Store(const QString& file, const QString& fiscalRegister, std::chrono::milliseconds patience,
    till::Database::Probe probe)
    : fileName(created(file))
    , db(file, {applicationId, {firstVersion}}, patience,
          [file](const QString& reason, till::Fault fault) { throw StoreError(file, reason, fault); })
    , opened(identityOf(file))
{
    const auto known = [&] {
        return db.value("SELECT number FROM registers WHERE address = ?", {fiscalRegister}).toLongLong();
    };
    number = known();
    if (number == 0) {
        db.change("INSERT OR IGNORE INTO registers (address) VALUES (?)", {fiscalRegister});
        number = known();
    }
    db.setProbe(std::move(probe));
}

void Store::requirePlace() const
{
    const QByteArray there = identityOf(fileName);
    if (there.isEmpty())
        throw StoreError(fileName, Text::tr("the file is not there any more"));
    if (there != opened)
        throw StoreError(fileName, Text::tr("the file was replaced"));
}

void Store::note(qint64 receipt, const char* event, qint64 worker, int attempt, const QByteArray& detail)
{
    db.change("INSERT INTO events (at, receipt, event, attempt, worker, detail)"
              " VALUES (CAST((julianday('now') - 2440587.5) * 86400000 AS INTEGER), ?, ?, ?, ?, ?)",
        {receipt, QString::fromLatin1(event), attempt, worker,
            detail.isEmpty() ? QVariant() : QVariant(detail)});
}

std::optional<Entry> Store::find(const QString& id)
{
    return firstOf("register = ? AND id = ?", {number, id});
}

std::optional<Entry> Store::firstOf(const char* condition, const QVariantList& values)
{
    std::optional<Entry> first;
    const QByteArray limited = QByteArray(condition) + " LIMIT 1";
    forEach(limited.constData(), values, [&](const Entry& entry) { first = entry; });
    return first;
}

void Store::forEach(
    const char* condition, const QVariantList& values, const std::function<void(const Entry&)>& handle)
{
    const QByteArray statement =
        QByteArray("SELECT number, id, state, held, attempt, maybeSent, fruitless, file, line, text, digest,"
                   " added, changed, uuid FROM receipts WHERE ") +
        condition;
    QSqlQuery row = db.query(statement.constData(), values);
    while (row.next())
        handle(entryIn(row));
}

QString registerAddress(const QString& url, const QString& group)
{
    const QString base = url.endsWith(u'/') ? url : url + u'/';
    return till::readComposed(QUrl(base + group + u"/sell"_s), {}).fiscalRegister;
}

QString defaultStoreFile()
{
    const QString journal = till::defaultJournalFile();
    return journal.isEmpty() ? QString() : QFileInfo(journal).path() + u"/queue.db"_s;
}

} // namespace queue
