#include "till/database/sqliteengine.h"

#include "till/database/database.h"
#include "till/text.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// Permissions, a lock, a read-only or failing or full disk, a missing folder.
constexpr int passingKinds[] = {3, 5, 6, 8, 10, 13, 14, 15};

// A transaction that changes something has the file for itself.
constexpr DialectWord sqliteWords[] = {
    {"@now", "CAST((julianday('now') - 2440587.5) * 86400000 AS INTEGER)"},
    {"@number", "INTEGER PRIMARY KEY AUTOINCREMENT"},
    {"@bytes", "BLOB"},
    {"@locked", ""},
    {"@free", ""},
};

} // namespace

SqliteEngine::SqliteEngine(QString usedFile)
    : file(std::move(usedFile))
{
}

QSqlDatabase SqliteEngine::add(const QString& connection, std::chrono::milliseconds patience) const
{
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection);
    database.setDatabaseName(file);
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(patience.count()));
    return database;
}

DatabaseMark SqliteEngine::mark(Database& database) const
{
    DatabaseMark mark;
    mark.applicationId = database.value("PRAGMA application_id").toInt();
    mark.version = database.value("PRAGMA user_version").toInt();
    mark.isNew = mark.applicationId == 0 && mark.version == 0 &&
                 database.value("SELECT count(*) FROM sqlite_schema").toInt() == 0;
    return mark;
}

void SqliteEngine::setMark(Database& database, const DatabaseMark& mark) const
{
    database.change(("PRAGMA application_id = " + QByteArray::number(mark.applicationId)).constData());
    database.change(("PRAGMA user_version = " + QByteArray::number(mark.version)).constData());
}

// The pragmas answer with what really holds, and do nothing silently where it cannot be had.
QString SqliteEngine::settle(Database& database) const
{
    if (database.value("PRAGMA journal_mode = WAL").toString() != "wal"_L1)
        return Text::tr("its file system does not support a write-ahead log");
    database.change("PRAGMA synchronous = FULL");
    if (constexpr int full = 2; database.value("PRAGMA synchronous").toInt() != full)
        return Text::tr("the database does not wait for the disk");
    return {};
}

bool SqliteEngine::run(QSqlQuery& query, const QString& statement, const QVariantList& values)
{
    if (query.lastQuery() != statement) {
        query.setForwardOnly(true);
        if (!query.prepare(statement))
            return false;
    }
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    return query.exec();
}

// The lower byte is the kind of the error.
bool SqliteEngine::isPassing(const QString& code) const
{
    return std::ranges::find(passingKinds, code.toInt() & 0xff) != std::end(passingKinds);
}

std::span<const DialectWord> SqliteEngine::words() const
{
    return sqliteWords;
}

} // namespace till
