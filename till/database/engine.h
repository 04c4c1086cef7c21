#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <memory>
#include <span>

namespace till {

class Database;

/// A word of a statement that each kind of database spells in its own way.
struct DialectWord
{
    const char* word;
    const char* spelling;
};

/// What a database says about itself.
struct DatabaseMark
{
    int applicationId = 0;
    int version = 0;
    /// Nothing is in it.
    bool isNew = false;
};

/// What differs between kinds of databases. Statements are the same but for these words:
///
/// | Word | Means |
/// |---|---|
/// | `@now` | milliseconds since 1970 by the database's clock |
/// | `@number` | the type of a key that the database counts itself, never twice |
/// | `@bytes` | the type of a text that is not looked into |
/// | `@locked` | has a SELECT keep others from changing its rows until the end of the transaction |
/// | `@free` | the same, and leaves out rows that others keep |
class Engine
{
public:
    Engine() = default;
    virtual ~Engine() = default;
    Q_DISABLE_COPY_MOVE(Engine)

    /// Enters an unopened connection with this name.
    [[nodiscard]] virtual QSqlDatabase add(
        const QString& connection, std::chrono::milliseconds patience) const = 0;
    /// Limits the time for which a new connection waits for others, and they for it.
    virtual void limit(Database& database, std::chrono::milliseconds patience) const = 0;
    [[nodiscard]] virtual DatabaseMark mark(Database& database) const = 0;
    /// Keeps others from changing the format until the end of the transaction.
    virtual void lockMark(Database& database) const = 0;
    virtual void setMark(Database& database, const DatabaseMark& mark) const = 0;
    /// Has commits wait for the disk, and reads that back. Returns why they do not; empty when they do.
    [[nodiscard]] virtual QString settle(Database& database) const = 0;

    /// Runs a statement with values in place of its question marks; returns whether it succeeded. `query` is
    /// new or has run the same statement.
    [[nodiscard]] virtual bool run(
        QSqlQuery& query, const QString& statement, const QVariantList& values) = 0;
    /// The same; a server keeps the plan for the next time.
    [[nodiscard]] virtual bool runPlanned(
        QSqlQuery& query, const QString& statement, const QVariantList& values) = 0;
    /// Whether an error with this code of the database may end by itself or from outside.
    [[nodiscard]] virtual bool isPassing(const QString& code) const = 0;

    /// Begins a transaction that changes something.
    [[nodiscard]] virtual const char* begin() const = 0;
    /// Begins one that reads a single state of the database.
    [[nodiscard]] virtual const char* beginReading() const = 0;
    [[nodiscard]] virtual std::span<const DialectWord> words() const = 0;
};

/// Whether the place names a service of PostgreSQL and not a file: `postgresql:service=NAME`.
[[nodiscard]] bool isOnServer(const QString& place);

/// The engine for a place.
[[nodiscard]] std::unique_ptr<Engine> engineFor(const QString& place);

} // namespace till
