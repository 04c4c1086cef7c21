#include "till/database/postgresengine.h"

#include "till/database/database.h"
#include "till/text.h"

#include <QSqlDriver>
#include <QSqlField>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// How codes of errors begin: no connection, a server that follows another one until it takes its place, a
// transaction that rested for too long, a conflict of transactions, no space or memory or connection left, a
// lock or another state of an object, the server's operator, the server's disk.
constexpr QLatin1StringView passingClasses[] = {
    "08"_L1, "25006"_L1, "25P03"_L1, "40"_L1, "53"_L1, "55"_L1, "57"_L1, "58"_L1};

constexpr DialectWord postgresWords[] = {
    {"@now", "CAST(extract(epoch FROM clock_timestamp()) * 1000 AS bigint)"},
    {"@number", "bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY"},
    {"@bytes", "bytea"},
    {"@locked", "FOR UPDATE"},
    {"@free", "FOR UPDATE SKIP LOCKED"},
};

// Columns of truth values are numbers in every database.
QString literal(const QSqlDriver& driver, const QVariant& value)
{
    if (!value.isValid())
        return u"NULL"_s;
    if (value.metaType() == QMetaType::fromType<bool>())
        return QString::number(value.toInt());
    QSqlField field(QString(), value.metaType());
    field.setValue(value);
    // The server has no text with this character, and the statement would end there. A service may send it.
    if (value.metaType() == QMetaType::fromType<QString>())
        field.setValue(value.toString().replace(QChar::Null, QChar::ReplacementCharacter));
    return driver.formatValue(field);
}

// With what is made of their positions in place of its question marks.
template <typename Make>
QString withValues(const QString& statement, const Make& make)
{
    const QStringList parts = statement.split(u'?');
    QString text = parts.first();
    for (qsizetype i = 1; i < parts.size(); ++i)
        text += make(i - 1) + parts[i];
    return text;
}

} // namespace

PostgresEngine::PostgresEngine(QString usedService)
    : service(std::move(usedService))
{
}

// A server that has gone away without a word is given up by the kernel in the time that a lock is waited for.
QSqlDatabase PostgresEngine::add(const QString& connection, std::chrono::milliseconds patience) const
{
    constexpr qint64 leastSeconds = 2;
    const qint64 seconds = std::max<qint64>(leastSeconds, patience.count() / 1000);
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QPSQL"_s, connection);
    database.setConnectOptions(
        u"service=%1;application_name=frhost;connect_timeout=%2;tcp_user_timeout=%3;keepalives_idle=%2"_s.arg(
            service, QString::number(seconds), QString::number(seconds * 1000)));
    return database;
}

// A machine that is cut off in the middle of a transaction must not keep its locks for hours.
void PostgresEngine::limit(Database& database, std::chrono::milliseconds patience) const
{
    const QByteArray time = QByteArray::number(static_cast<qint64>(patience.count()));
    database.change(("SET lock_timeout = " + time).constData());
    database.change(("SET idle_in_transaction_session_timeout = " + time).constData());
}

// to_regclass() would go on answering that the table is missing within a transaction that has asked before.
DatabaseMark PostgresEngine::mark(Database& database) const
{
    const bool isThere =
        database
            .value("SELECT EXISTS (SELECT 1 FROM pg_class WHERE relname = 'databaseformat'"
                   " AND relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = current_schema()))")
            .toBool();
    if (!isThere)
        return {0, 0, true};
    return {database.value("SELECT applicationId FROM databaseFormat").toInt(),
        database.value("SELECT version FROM databaseFormat").toInt(), false};
}

// Two that open an empty schema at once would both make its tables.
void PostgresEngine::lockMark(Database& database) const
{
    database.change("SELECT pg_advisory_xact_lock(hashtext('databaseFormat'), hashtext(current_schema()))");
}

void PostgresEngine::setMark(Database& database, const DatabaseMark& mark) const
{
    database.change("CREATE TABLE IF NOT EXISTS databaseFormat"
                    " (applicationId bigint NOT NULL, version bigint NOT NULL)");
    database.change("DELETE FROM databaseFormat");
    database.change("INSERT INTO databaseFormat VALUES (?, ?)", {mark.applicationId, mark.version});
}

QString PostgresEngine::settle(Database& database) const
{
    database.change("SET synchronous_commit = on");
    for (const char* setting : {"SHOW synchronous_commit", "SHOW fsync"}) {
        if (database.value(setting).toString() != "on"_L1)
            return Text::tr("the database does not wait for the disk");
    }
    return {};
}

// With the values in the text, a statement takes one message each way. The driver's own prepared statements
// take three, and complain on the standard error output when the connection is lost.
bool PostgresEngine::run(QSqlQuery& query, const QString& statement, const QVariantList& values)
{
    return query.exec(
        withValues(statement, [&](qsizetype i) { return literal(*query.driver(), values.value(i)); }));
}

// A plan made while a table is empty would read all of it, and be used when it is large, until the server
// counts its rows.
bool PostgresEngine::runPlanned(QSqlQuery& query, const QString& statement, const QVariantList& values)
{
    QString& name = plans[statement];
    if (name.isEmpty()) {
        const QString next = u"plan%1"_s.arg(plans.size());
        const auto numbered = [](qsizetype i) { return u'$' + QString::number(i + 1); };
        if (!query.exec(u"SET plan_cache_mode = force_generic_plan; SET enable_seqscan = off; PREPARE "_s +
                        next + u" AS "_s + withValues(statement, numbered)))
            return false;
        name = next;
    }
    QStringList literals;
    for (const QVariant& value : values)
        literals << literal(*query.driver(), value);
    return query.exec(u"EXECUTE "_s + name + u'(' + literals.join(u", "_s) + u')');
}

// What happens to the connection has no code.
bool PostgresEngine::isPassing(const QString& code) const
{
    return code.isEmpty() ||
           std::ranges::any_of(passingClasses, [&](QLatin1StringView kind) { return code.startsWith(kind); });
}

std::span<const DialectWord> PostgresEngine::words() const
{
    return postgresWords;
}

} // namespace till
