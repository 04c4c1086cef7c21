#include "till/database/database.h"

#include "till/text.h"

#include <QUuid>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// Of SQLite: permissions, a lock, a read-only or failing or full disk, a missing folder.
constexpr int passing[] = {3, 5, 6, 8, 10, 13, 14, 15};

} // namespace

Database::Database(
    const QString& file, const DatabaseFormat& usedFormat, std::chrono::milliseconds patience, Fail failure)
    : connection(u"frhost-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , fail(std::move(failure))
{
    try {
        open(file, usedFormat, patience);
    } catch (...) {
        database = {};
        QSqlDatabase::removeDatabase(connection);
        throw;
    }
}

Database::~Database()
{
    database = {};
    QSqlDatabase::removeDatabase(connection);
}

void Database::open(const QString& file, const DatabaseFormat& format, std::chrono::milliseconds patience)
{
    database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(file);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(patience.count()));
    if (!database.open())
        failBy(database.lastError());
    transaction([&] { bringUpToDate(format); });
    // The pragmas answer with what really holds, and do nothing silently where it cannot be had.
    if (value("PRAGMA journal_mode = WAL").toString() != "wal"_L1)
        fail(Text::tr("its file system does not support a write-ahead log"), Fault::Lasting);
    change("PRAGMA synchronous = FULL");
    if (constexpr int full = 2; value("PRAGMA synchronous").toInt() != full)
        fail(Text::tr("the database does not wait for the disk"), Fault::Lasting);
}

// The lower byte is the kind of the error.
void Database::failBy(const QSqlError& error)
{
    const int kind = error.nativeErrorCode().toInt() & 0xff;
    const bool isPassing = std::ranges::find(passing, kind) != std::end(passing);
    fail(error.databaseText(), isPassing ? Fault::Passing : Fault::Lasting);
}

void Database::bringUpToDate(const DatabaseFormat& format)
{
    const int owner = value("PRAGMA application_id").toInt();
    const int known = static_cast<int>(format.versions.size());
    int version = value("PRAGMA user_version").toInt();
    const bool isNew = owner == 0 && version == 0 && value("SELECT count(*) FROM sqlite_schema").toInt() == 0;
    if (!isNew && owner != format.applicationId)
        fail(Text::tr("the file is a database of another program"), Fault::Lasting);
    if (version > known)
        fail(Text::tr("it was written by a newer version of this program (format %1, known here: %2)")
                 .arg(QString::number(version), QString::number(known)),
            Fault::Lasting);
    if (version == known)
        return;
    for (; version < known; ++version) {
        for (const char* statement : format.versions[static_cast<std::size_t>(version)])
            change(statement);
    }
    change(("PRAGMA application_id = " + QByteArray::number(format.applicationId)).constData());
    change(("PRAGMA user_version = " + QByteArray::number(version)).constData());
}

void Database::transaction(const std::function<void()>& action)
{
    enclose("BEGIN IMMEDIATE", action);
}

void Database::snapshot(const std::function<void()>& action)
{
    enclose("BEGIN", action);
}

void Database::enclose(const char* begin, const std::function<void()>& action)
{
    change(begin);
    try {
        action();
        change("COMMIT");
    } catch (...) {
        // Fails where the database has rolled back by itself.
        QSqlQuery(database).exec(u"ROLLBACK"_s);
        throw;
    }
}

QSqlQuery Database::query(const char* statement, const QVariantList& values)
{
    if (probe)
        probe();
    QSqlQuery query(database);
    query.setForwardOnly(true);
    bool isGood = query.prepare(QString::fromLatin1(statement));
    for (const QVariant& value : values)
        query.addBindValue(value);
    isGood = isGood && query.exec();
    if (!isGood)
        failBy(query.lastError());
    return query;
}

QVariant Database::value(const char* statement, const QVariantList& values)
{
    QSqlQuery row = query(statement, values);
    return row.next() ? row.value(0) : QVariant();
}

int Database::change(const char* statement, const QVariantList& values)
{
    // Statements that return rows are carried out only as far as these are read.
    QSqlQuery done = query(statement, values);
    while (done.next()) {
    }
    return done.numRowsAffected();
}

} // namespace till
