#include "emulator/store/sqlite.h"

#include <sqlite3.h>

namespace emulator::sqlite {

namespace {

void check(const int code, sqlite3* handle)
{
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        throw Error(sqlite3_errmsg(handle));
}

} // namespace

Database::Database(const std::string& file, const char* schema)
{
    const bool good = sqlite3_open(file.c_str(), &handle_) == SQLITE_OK &&
                      sqlite3_exec(handle_, schema, nullptr, nullptr, nullptr) == SQLITE_OK;
    if (!good) {
        const std::string message = "cannot open " + file + ": " + sqlite3_errmsg(handle_);
        sqlite3_close(handle_);
        throw Error(message);
    }
}

Database::~Database()
{
    sqlite3_close(handle_);
}

void Database::execute(const char* sql)
{
    check(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr), handle_);
}

std::int64_t Database::lastInsertId() const
{
    return sqlite3_last_insert_rowid(handle_);
}

Rows::~Rows()
{
    if (statement_ == nullptr)
        return;
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

bool Rows::next()
{
    const int code = sqlite3_step(statement_);
    check(code, sqlite3_db_handle(statement_));
    return code == SQLITE_ROW;
}

std::int64_t Rows::integer(const int column) const
{
    return sqlite3_column_int64(statement_, column);
}

std::string Rows::text(const int column) const
{
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const int size = sqlite3_column_bytes(statement_, column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(size));
}

Statement::Statement(const Database& database, const std::string_view sql)
{
    check(sqlite3_prepare_v3(database.handle(), sql.data(), static_cast<int>(sql.size()),
              SQLITE_PREPARE_PERSISTENT, &statement_, nullptr),
        database.handle());
}

Statement::~Statement()
{
    sqlite3_finalize(statement_);
}

void Statement::bind(const int index, const std::int64_t value)
{
    check(sqlite3_bind_int64(statement_, index, value), sqlite3_db_handle(statement_));
}

void Statement::bind(const int index, const std::string_view value)
{
    check(sqlite3_bind_text64(statement_, index, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8),
        sqlite3_db_handle(statement_));
}

Transaction::Transaction(Database& database)
    : database_(database)
{
    database_.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (open_)
        sqlite3_exec(database_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit()
{
    database_.execute("COMMIT");
    open_ = false;
}

Savepoint::Savepoint(Database& database)
    : database_(database)
{
    database_.execute("SAVEPOINT point");
}

Savepoint::~Savepoint()
{
    if (open_)
        sqlite3_exec(database_.handle(), "ROLLBACK TO point; RELEASE point", nullptr, nullptr, nullptr);
}

void Savepoint::release()
{
    database_.execute("RELEASE point");
    open_ = false;
}

} // namespace emulator::sqlite
