#include "emulator/store/schema.h"

#include "emulator/values/digest.h"
#include "emulator/values/pattern.h"

#include <cstdint>
#include <string>

namespace emulator {

namespace {

constexpr auto settings = "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL";

constexpr auto tables = R"(
CREATE TABLE IF NOT EXISTS tokens(
    sequence INTEGER PRIMARY KEY, digest TEXT UNIQUE, login TEXT, expires_at INTEGER);
CREATE TABLE IF NOT EXISTS registers(
    group_code TEXT, number INTEGER, storage_number TEXT, registration_number TEXT, documents INTEGER,
    shift INTEGER, receipts_in_shift INTEGER, shift_open INTEGER, shift_opened_at INTEGER, free_at INTEGER,
    PRIMARY KEY(group_code, number));
CREATE TABLE IF NOT EXISTS documents(
    sequence INTEGER PRIMARY KEY AUTOINCREMENT, uuid TEXT UNIQUE, group_code TEXT, external_id TEXT,
    operation TEXT, login TEXT, received_at INTEGER, body TEXT, total INTEGER, callback_url TEXT,
    device_code TEXT, ready_at INTEGER, waits_left INTEGER, outcome INTEGER, payload TEXT, error TEXT,
    UNIQUE(group_code, external_id));
CREATE TABLE IF NOT EXISTS register_calls(
    sequence INTEGER PRIMARY KEY, group_code TEXT, external_id TEXT, operation TEXT, requests INTEGER,
    UNIQUE(group_code, external_id, operation));
CREATE TABLE IF NOT EXISTS exchanges(
    sequence INTEGER PRIMARY KEY AUTOINCREMENT, at INTEGER, endpoint TEXT, group_code TEXT, external_id TEXT,
    uuid TEXT, login TEXT, request TEXT, answer TEXT, status INTEGER, code INTEGER, fault TEXT);
CREATE INDEX IF NOT EXISTS exchanges_by_id ON exchanges(external_id, group_code);
CREATE TABLE IF NOT EXISTS refusals(
    exchange INTEGER PRIMARY KEY, group_code TEXT, external_id TEXT, operation TEXT, total INTEGER, fields TEXT);
CREATE INDEX IF NOT EXISTS refusals_by_id ON refusals(external_id, group_code);
)";

// Version 0 is a new database, or one of the emulators that stored tokens as they are.
constexpr std::int64_t currentVersion = 1;

std::int64_t number(sqlite::Database& database, const char* sql)
{
    sqlite::Statement statement(database, sql);
    sqlite::Rows rows = statement.rows();
    return rows.next() ? rows.integer(0) : 0;
}

void replaceTokensByDigests(sqlite::Database& database)
{
    sqlite::Transaction transaction(database);
    database.addFunction("digest_of", [](std::string_view text) { return digestOf(text); });
    database.execute("UPDATE tokens SET token = digest_of(token);"
                     "ALTER TABLE tokens RENAME COLUMN token TO digest");
    transaction.commit();
}

} // namespace

void prepare(sqlite::Database& database)
{
    database.addPredicate("matches", matches);
    database.execute(settings);
    const std::int64_t version = number(database, "PRAGMA user_version");
    if (version > currentVersion)
        throw sqlite::Error("a newer fremulator wrote it");
    if (number(database, "SELECT count(*) FROM pragma_table_info('tokens') WHERE name = 'token'") > 0)
        replaceTokensByDigests(database);
    database.execute(tables);
    if (version == currentVersion)
        return;
    // The tokens must not stay readable in what the file no longer uses.
    database.execute("VACUUM; PRAGMA wal_checkpoint(TRUNCATE)");
    database.execute("PRAGMA user_version = 1");
}

} // namespace emulator
