#include "emulator/store/sqlite.h"

#include <sqlite3.h>

namespace emulator::sqlite {

namespace {

void check(int code, sqlite3* handle)
{
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        throw Error(sqlite3_errmsg(handle));
}

// A text may hold zero bytes.
std::string_view textOf(sqlite3_value* value)
{
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
    return bytes == nullptr ? std::string_view() : std::string_view(bytes, size);
}

} // namespace

Database::Database(const std::string& file, const std::function<void(Database&)>& prepare)
{
    try {
        check(sqlite3_open(file.c_str(), &connection), connection);
        prepare(*this);
    } catch (const Error& error) {
        const std::string message = "cannot use " + file + ": " + error.what();
        sqlite3_close(connection);
        throw Error(message);
    }
}

Database::~Database()
{
    sqlite3_close(connection);
}

void Database::execute(const char* sql)
{
    check(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), connection);
}

void Database::addPredicate(const char* name, bool (*function)(std::string_view, std::string_view))
{
    using Function = decltype(function);
    const auto call = [](sqlite3_context* context, int, sqlite3_value** values) {
        const auto used = reinterpret_cast<Function>(sqlite3_user_data(context));
        sqlite3_result_int(context, used(textOf(values[0]), textOf(values[1])) ? 1 : 0);
    };
    check(sqlite3_create_function(connection, name, 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
              reinterpret_cast<void*>(function), call, nullptr, nullptr),
        connection);
}

void Database::addFunction(const char* name, std::string (*function)(std::string_view))
{
    using Function = decltype(function);
    const auto call = [](sqlite3_context* context, int, sqlite3_value** values) {
        const std::string result = reinterpret_cast<Function>(sqlite3_user_data(context))(textOf(values[0]));
        sqlite3_result_text64(context, result.data(), result.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    };
    check(sqlite3_create_function(connection, name, 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
              reinterpret_cast<void*>(function), call, nullptr, nullptr),
        connection);
}

std::int64_t Database::lastInsertId() const
{
    return sqlite3_last_insert_rowid(connection);
}

Rows::~Rows()
{
    if (statement == nullptr)
        return;
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

bool Rows::next()
{
    const int code = sqlite3_step(statement);
    check(code, sqlite3_db_handle(statement));
    return code == SQLITE_ROW;
}

std::int64_t Rows::integer(int column) const
{
    return sqlite3_column_int64(statement, column);
}

std::string Rows::text(int column) const
{
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
    const int size = sqlite3_column_bytes(statement, column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(size));
}

Statement::Statement(const Database& database, std::string_view sql)
{
    check(sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()),
              SQLITE_PREPARE_PERSISTENT, &statement, nullptr),
        database.handle());
}

Statement::~Statement()
{
    sqlite3_finalize(statement);
}

void Statement::bind(int index, std::int64_t value)
{
    check(sqlite3_bind_int64(statement, index, value), sqlite3_db_handle(statement));
}

void Statement::bind(int index, std::string_view value)
{
    check(sqlite3_bind_text64(statement, index, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8),
        sqlite3_db_handle(statement));
}

Transaction::Transaction(Database& usedDatabase)
    : database(usedDatabase)
{
    database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (open)
        sqlite3_exec(database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit()
{
    database.execute("COMMIT");
    open = false;
}

Savepoint::Savepoint(Database& usedDatabase)
    : database(usedDatabase)
{
    database.execute("SAVEPOINT point");
}

Savepoint::~Savepoint()
{
    if (open)
        sqlite3_exec(database.handle(), "ROLLBACK TO point; RELEASE point", nullptr, nullptr, nullptr);
}

void Savepoint::release()
{
    database.execute("RELEASE point");
    open = false;
}

} // namespace emulator::sqlite
