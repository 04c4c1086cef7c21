#pragma once

#include "till/database/engine.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <span>
#include <unordered_map>
#include <vector>

namespace till {

/// How long the reason may last why a database cannot be used.
enum class Fault
{
    /// It may end by itself or from outside: a lock, a full disk, a folder or a server that is
    /// not there.
    Passing,
    /// It is about the content.
    Lasting,
};

/// What kind of database it is.
struct DatabaseFormat
{
    /// So that the database of another program is not taken for one of ours.
    int applicationId = 0;
    /// The statements that make each version of the schema from the one before; the first makes version 1.
    std::vector<std::span<const char* const>> versions;
    /// Words of its own, spelled for the engine that is used.
    std::span<const DialectWord> words = {};
};

/// A SQLite file or a service of PostgreSQL that any number of processes may use at once. A change is on the
/// disk when it returns: what that takes is set and read back. A schema of an older version is brought up to
/// date when the database is opened. Statements are written with the words of an Engine.
///
/// One thread uses an object.
class Database
{
public:
    /// Called with the reason why the database cannot be used; throws.
    using Fail = std::function<void(const QString& reason, Fault fault)>;
    /// Called before each statement.
    using Probe = std::function<void()>;
    /// Called for each row.
    using Handle = std::function<void(const QSqlQuery& row)>;

    /// Opens the service or the file, which must exist. Waits `patience` for other processes.
    Database(const QString& place, const DatabaseFormat& usedFormat, std::chrono::milliseconds patience,
        Fail failure);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    /// For tests, which throw from it as if the process died there.
    void setProbe(Probe asked) { probe = std::move(asked); }

    /// Carries out the action as a whole, or not at all where it throws.
    void transaction(const std::function<void()>& action);
    /// Has the action read one state of the database, while other processes go on writing.
    void snapshot(const std::function<void()>& action);
    [[nodiscard]] QSqlQuery query(const char* statement, const QVariantList& values = {});
    void forEach(const char* statement, const QVariantList& values, const Handle& handle);
    /// The same for a statement that is run again and again: a server plans it once, using indexes wherever
    /// it can, whatever is in the tables.
    void forEachPlanned(const char* statement, const QVariantList& values, const Handle& handle);
    /// The first value of the first row; invalid when there is none.
    [[nodiscard]] QVariant value(const char* statement, const QVariantList& values = {});
    /// Returns the number of rows that were changed.
    int change(const char* statement, const QVariantList& values = {});

private:
    using Run = bool (Engine::*)(QSqlQuery&, const QString&, const QVariantList&);
    using Read = std::function<void(QSqlQuery& done)>;

    void open(const DatabaseFormat& format, std::chrono::milliseconds patience);
    void failBy(const QSqlError& error);
    void requireConnection();
    void run(Run how, const char* statement, const QVariantList& values, const Read& read);
    void enclose(const char* begin, const std::function<void()>& action);
    [[nodiscard]] bool isUpToDate(const DatabaseFormat& format);
    void bringUpToDate(const DatabaseFormat& format);
    [[nodiscard]] QString spelled(const char* statement);

    QString connection;
    std::unique_ptr<Engine> engine;
    std::vector<DialectWord> words;
    QHash<QByteArray, QString> spellings;
    Fail fail;
    Probe probe;
    QSqlDatabase database;
    // By their statement.
    std::unordered_map<QString, QSqlQuery> kept;
};

} // namespace till
