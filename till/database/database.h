#pragma once

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

/// How long the reason may last why a file cannot be used.
enum class Fault
{
    /// It may end by itself or from outside: a lock, a full disk, a folder that is not there.
    Passing,
    /// It is about the content of the file.
    Lasting,
};

/// What kind of database a file is.
struct DatabaseFormat
{
    /// So that the file of another program is not taken for one of ours.
    int applicationId = 0;
    /// The statements that make each version of the schema from the one before; the first makes version 1.
    std::vector<std::span<const char* const>> versions;
};

/// A SQLite file that any number of processes may use at once. A change is on the disk when it returns: the
/// write-ahead log and synchronous=FULL are set and read back. A schema of an older version is brought up to
/// date when the file is opened.
///
/// One thread uses an object.
class Database
{
public:
    /// Called with the reason why the file cannot be used; throws.
    using Fail = std::function<void(const QString& reason, Fault fault)>;
    /// Called before each statement.
    using Probe = std::function<void()>;

    /// Opens the file, which must exist. Waits `patience` for other processes.
    Database(const QString& file, const DatabaseFormat& usedFormat, std::chrono::milliseconds patience,
        Fail failure);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    /// For tests, which throw from it as if the process died there.
    void setProbe(Probe asked) { probe = std::move(asked); }

    /// Carries out the action as a whole, or not at all where it throws.
    void transaction(const std::function<void()>& action);
    /// Has the action read one state of the file, while other processes go on writing.
    void snapshot(const std::function<void()>& action);
    [[nodiscard]] QSqlQuery query(const char* statement, const QVariantList& values = {});
    /// The first value of the first row; invalid when there is none.
    [[nodiscard]] QVariant value(const char* statement, const QVariantList& values = {});
    /// Returns the number of rows that were changed.
    int change(const char* statement, const QVariantList& values = {});

private:
    void open(const QString& file, const DatabaseFormat& format, std::chrono::milliseconds patience);
    void failBy(const QSqlError& error);
    void enclose(const char* begin, const std::function<void()>& action);
    void bringUpToDate(const DatabaseFormat& format);

    QString connection;
    Fail fail;
    Probe probe;
    QSqlDatabase database;
};

} // namespace till
