#include "till/database/database.h"

#include "till/text.h"

#include <QUuid>

using namespace Qt::Literals::StringLiterals;

namespace till {

Database::Database(
    const QString& place, const DatabaseFormat& usedFormat, std::chrono::milliseconds patience, Fail failure)
    : connection(u"frhost-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , engine(engineFor(place))
    , fail(std::move(failure))
{
    const auto own = engine->words();
    words.assign(own.begin(), own.end());
    words.insert(words.end(), usedFormat.words.begin(), usedFormat.words.end());
    try {
        open(usedFormat, patience);
    } catch (...) {
        kept.clear();
        database = {};
        QSqlDatabase::removeDatabase(connection);
        throw;
    }
}

Database::~Database()
{
    kept.clear();
    database = {};
    QSqlDatabase::removeDatabase(connection);
}

void Database::open(const DatabaseFormat& format, std::chrono::milliseconds patience)
{
    database = engine->add(connection, patience);
    if (!database.open())
        failBy(database.lastError());
    engine->limit(*this, patience);
    // Who finds it as it is to be waits for nobody who changes something.
    if (!isUpToDate(format))
        transaction([&] { bringUpToDate(format); });
    if (const QString reason = engine->settle(*this); !reason.isEmpty())
        fail(reason, Fault::Lasting);
    // They are run once.
    kept.clear();
}

void Database::failBy(const QSqlError& error)
{
    const bool isPassing = engine->isPassing(error.nativeErrorCode());
    fail(error.databaseText().simplified(), isPassing ? Fault::Passing : Fault::Lasting);
}

bool Database::isUpToDate(const DatabaseFormat& format)
{
    DatabaseMark mark;
    snapshot([&] { mark = engine->mark(*this); });
    return mark.applicationId == format.applicationId &&
           mark.version == static_cast<int>(format.versions.size());
}

void Database::bringUpToDate(const DatabaseFormat& format)
{
    const int known = static_cast<int>(format.versions.size());
    DatabaseMark mark = engine->mark(*this);
    if (mark.version < known) {
        engine->lockMark(*this);
        mark = engine->mark(*this);
    }
    if (!mark.isNew && mark.applicationId != format.applicationId)
        fail(Text::tr("the file is a database of another program"), Fault::Lasting);
    if (mark.version > known)
        fail(Text::tr("it was written by a newer version of this program (format %1, known here: %2)")
                 .arg(QString::number(mark.version), QString::number(known)),
            Fault::Lasting);
    if (mark.version == known)
        return;
    for (int version = mark.version; version < known; ++version) {
        for (const char* statement : format.versions[static_cast<std::size_t>(version)])
            change(statement);
    }
    engine->setMark(*this, {format.applicationId, known});
}

void Database::transaction(const std::function<void()>& action)
{
    enclose(engine->begin(), action);
}

void Database::snapshot(const std::function<void()>& action)
{
    enclose(engine->beginReading(), action);
}

void Database::enclose(const char* begin, const std::function<void()>& action)
{
    change(begin);
    try {
        action();
        change("COMMIT");
    } catch (...) {
        // Fails where the database has rolled back by itself.
        if (database.isOpen())
            QSqlQuery(database).exec(u"ROLLBACK"_s);
        throw;
    }
}

QString Database::spelled(const char* statement)
{
    const QByteArray key(statement);
    if (const auto known = spellings.constFind(key); known != spellings.cend())
        return *known;
    QString text = QString::fromLatin1(key);
    for (const DialectWord& word : words)
        text.replace(QLatin1StringView(word.word), QLatin1StringView(word.spelling));
    spellings.insert(key, text);
    return text;
}

void Database::requireConnection()
{
    if (probe)
        probe();
    if (!database.isOpen())
        fail(Text::tr("the connection to the server is lost"), Fault::Passing);
}

QSqlQuery Database::query(const char* statement, const QVariantList& values)
{
    requireConnection();
    QSqlQuery query(database);
    if (!engine->run(query, spelled(statement), values))
        failBy(query.lastError());
    return query;
}

// While its rows are read, the statement may be run again. One that has failed is not kept.
void Database::run(Run how, const char* statement, const QVariantList& values, const Read& read)
{
    requireConnection();
    const QString text = spelled(statement);
    const auto known = kept.extract(text);
    QSqlQuery query = known ? std::move(known.mapped()) : QSqlQuery(database);
    if (!((*engine).*how)(query, text, values))
        failBy(query.lastError());
    read(query);
    query.finish();
    kept.insert_or_assign(text, std::move(query));
}

void Database::forEach(const char* statement, const QVariantList& values, const Handle& handle)
{
    run(&Engine::run, statement, values, [&](QSqlQuery& row) {
        while (row.next())
            handle(row);
    });
}

void Database::forEachPlanned(const char* statement, const QVariantList& values, const Handle& handle)
{
    run(&Engine::runPlanned, statement, values, [&](QSqlQuery& row) {
        while (row.next())
            handle(row);
    });
}

QVariant Database::value(const char* statement, const QVariantList& values)
{
    QVariant first;
    run(&Engine::run, statement, values, [&](QSqlQuery& row) {
        if (row.next())
            first = row.value(0);
    });
    return first;
}

int Database::change(const char* statement, const QVariantList& values)
{
    int changed = 0;
    run(&Engine::run, statement, values, [&](QSqlQuery& done) {
        // Statements that return rows are carried out only as far as these are read.
        while (done.next()) {
        }
        changed = done.numRowsAffected();
    });
    return changed;
}

} // namespace till
