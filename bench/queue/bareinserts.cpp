#include "bench/queue/bareinserts.h"

#include <QSqlError>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

void require(bool isGood, const QSqlQuery& query)
{
    if (!isGood)
        throw std::runtime_error(query.lastError().text().toStdString());
}

} // namespace

BareInserts::BareInserts(const QString& file)
    : database(QSqlDatabase::addDatabase(u"QSQLITE"_s, u"bare"_s))
{
    database.setDatabaseName(file);
    if (!database.open())
        throw std::runtime_error(database.lastError().text().toStdString());
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = FULL");
    run("CREATE TABLE receipts (id TEXT PRIMARY KEY, file TEXT, line INTEGER, text BLOB, digest BLOB)");
    insertion = QSqlQuery(database);
    require(insertion.prepare(u"INSERT INTO receipts VALUES (?, ?, ?, ?, ?)"_s), insertion);
}

BareInserts::~BareInserts()
{
    insertion = QSqlQuery();
    database = {};
    QSqlDatabase::removeDatabase(u"bare"_s);
}

void BareInserts::insert(const queue::NewEntry& entry)
{
    const QVariant values[] = {entry.id, entry.file, entry.line, entry.text, entry.digest};
    for (int i = 0; const QVariant& value : values)
        insertion.bindValue(i++, value);
    require(insertion.exec(), insertion);
    insertion.finish();
}

void BareInserts::transaction(const std::function<void()>& action)
{
    run("BEGIN IMMEDIATE");
    action();
    run("COMMIT");
}

void BareInserts::run(const char* statement)
{
    QSqlQuery query(database);
    require(query.exec(QString::fromLatin1(statement)), query);
}

} // namespace bench
