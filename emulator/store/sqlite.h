#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace emulator::sqlite {

/// A call of SQLite failed; the message is SQLite's.
class Error : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// An open database. Every call that fails throws Error.
class Database
{
public:
    /// Opens or creates `file` (`:memory:` lasts as long as the object) and prepares it for use. The message
    /// of an error that `prepare` throws names the file.
    Database(const std::string& file, const std::function<void(Database&)>& prepare);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Runs statements without parameters or results.
    void execute(const char* sql);

    /// Adds a function to SQL: of two texts, true or false; or of one text, another.
    void addPredicate(const char* name, bool (*function)(std::string_view, std::string_view));
    void addFunction(const char* name, std::string (*function)(std::string_view));

    [[nodiscard]] std::int64_t lastInsertId() const;
    [[nodiscard]] sqlite3* handle() const { return connection; }

private:
    sqlite3* connection = nullptr;
};

/// The rows of a running statement; once destroyed, the statement can be used again.
class Rows
{
public:
    explicit Rows(sqlite3_stmt* startedStatement)
        : statement(startedStatement)
    {
    }
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    Rows(Rows&& other) noexcept
        : statement(std::exchange(other.statement, nullptr))
    {
    }

    /// Moves to the next row; returns false if there is none.
    bool next();
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string text(int column) const;

private:
    sqlite3_stmt* statement;
};

/// A prepared statement. The database must outlive it.
class Statement
{
public:
    Statement(const Database& database, std::string_view sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Binds integers and texts in order and starts the statement. Texts are copied.
    template <class... Values>
    [[nodiscard]] Rows rows(const Values&... values)
    {
        int index = 0;
        (bind(++index, values), ...);
        return Rows(statement);
    }

    /// Binds likewise and runs the statement to its end.
    template <class... Values>
    void run(const Values&... values)
    {
        Rows all = rows(values...);
        while (all.next()) {
        }
    }

private:
    void bind(int index, std::int64_t value);
    void bind(int index, int value) { bind(index, std::int64_t{value}); }
    void bind(int index, bool value) { bind(index, std::int64_t{value}); }
    void bind(int index, std::string_view value);
    void bind(int index, const std::string& value) { bind(index, std::string_view(value)); }
    void bind(int index, const char* value) { bind(index, std::string_view(value)); }

    sqlite3_stmt* statement = nullptr;
};

/// Changes are undone on destruction unless committed.
class Transaction
{
public:
    explicit Transaction(Database& usedDatabase);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& database;
    bool open = true;
};

/// A part of a transaction. Its changes are undone on destruction unless released.
class Savepoint
{
public:
    explicit Savepoint(Database& usedDatabase);
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;

    void release();

private:
    Database& database;
    bool open = true;
};

} // namespace emulator::sqlite
