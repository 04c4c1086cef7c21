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
    /// The first value of the first row; invalid when there is none.
    [[nodiscard]] QVariant value(const char* statement, const QVariantList& values = {});
    /// Returns the number of rows that were changed.
    int change(const char* statement, const QVariantList& values = {});

private:
    void open(const DatabaseFormat& format, std::chrono::milliseconds patience);
    void failBy(const QSqlError& error);
    void enclose(const char* begin, const std::function<void()>& action);
    void bringUpToDate(const DatabaseFormat& format);
    [[nodiscard]] QString spelled(const char* statement);

    QString connection;
    std::unique_ptr<Engine> engine;
    std::vector<DialectWord> words;
    QHash<QByteArray, QString> spellings;
    Fail fail;
    Probe probe;
    QSqlDatabase database;
};

} // namespace till
