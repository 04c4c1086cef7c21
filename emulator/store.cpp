#include "emulator/store.h"

namespace emulator {

namespace {

constexpr auto schema = R"(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = NORMAL;
CREATE TABLE IF NOT EXISTS tokens(token TEXT PRIMARY KEY, login TEXT, expires_at INTEGER) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS registers(
    group_code TEXT, number INTEGER, storage_number TEXT, registration_number TEXT, documents INTEGER,
    shift INTEGER, receipts_in_shift INTEGER, shift_open INTEGER, shift_opened_at INTEGER, free_at INTEGER,
    PRIMARY KEY(group_code, number));
CREATE TABLE IF NOT EXISTS documents(
    sequence INTEGER PRIMARY KEY AUTOINCREMENT, uuid TEXT UNIQUE, group_code TEXT, external_id TEXT,
    operation TEXT, login TEXT, received_at INTEGER, body TEXT, total INTEGER, callback_url TEXT,
    device_code TEXT, ready_at INTEGER, waits_left INTEGER, outcome INTEGER, payload TEXT, error TEXT,
    UNIQUE(group_code, external_id));
)";

std::int64_t toNumber(const TimePoint time)
{
    return time.time_since_epoch().count();
}

TimePoint toTime(const std::int64_t number)
{
    return TimePoint(std::chrono::milliseconds(number));
}

Json toJson(const std::string& text)
{
    return text.empty() ? Json() : Json::parse(text);
}

std::string toText(const Json& json)
{
    return json.is_null() ? std::string() : json.dump();
}

} // namespace

Store::Store(const std::string& file)
    : database_(file, schema)
    , insertToken_(database_, "INSERT INTO tokens VALUES(?, ?, ?)")
    , selectToken_(database_, "SELECT login, expires_at FROM tokens WHERE token = ?")
    , insertRegister_(database_, "INSERT INTO registers VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
    , countRegisters_(database_, "SELECT count(*), count(*) FILTER (WHERE group_code = ?) FROM registers")
    , selectRegister_(database_, "SELECT * FROM registers WHERE group_code = ? AND number <= ?"
                                 " ORDER BY free_at, documents, number LIMIT 1")
    , updateRegister_(database_,
          "UPDATE registers SET documents = ?, shift = ?, receipts_in_shift = ?, shift_open = ?,"
          " shift_opened_at = ?, free_at = ? WHERE group_code = ? AND number = ?")
    , insertDocument_(
          database_, "INSERT INTO documents VALUES(NULL, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
    , selectDocument_(database_, "SELECT * FROM documents WHERE uuid = ?")
    , selectUuid_(database_, "SELECT uuid FROM documents WHERE group_code = ? AND external_id = ?")
    , updateWaits_(database_, "UPDATE documents SET waits_left = ? WHERE sequence = ?")
{
}

void Store::addToken(const std::string& token, const Token& about)
{
    insertToken_.run(token, about.login, toNumber(about.expiresAt));
}

std::optional<Token> Store::findToken(const std::string& token)
{
    sqlite::Rows rows = selectToken_.rows(token);
    if (!rows.next())
        return std::nullopt;
    return Token{.login = rows.text(0), .expiresAt = toTime(rows.integer(1))};
}

void Store::prepareRegisters(const std::string& groupCode, const int count)
{
    sqlite::Transaction transaction(database_);
    std::int64_t all = 0;
    int ofGroup = 0;
    {
        sqlite::Rows rows = countRegisters_.rows(groupCode);
        rows.next();
        all = rows.integer(0);
        ofGroup = static_cast<int>(rows.integer(1));
    }
    for (int number = ofGroup + 1; number <= count; ++number) {
        const Register fresh = newRegister(groupCode, number, ++all);
        insertRegister_.run(groupCode, number, fresh.storageNumber, fresh.registrationNumber, fresh.documents,
            fresh.shift, fresh.receiptsInShift, fresh.shiftOpen, toNumber(fresh.shiftOpenedAt),
            toNumber(fresh.freeAt));
    }
    transaction.commit();
}

Register Store::freestRegister(const std::string& groupCode, const int count)
{
    sqlite::Rows rows = selectRegister_.rows(groupCode, count);
    if (!rows.next())
        throw sqlite::Error("group " + groupCode + " has no register");
    return {.groupCode = rows.text(0),
        .number = static_cast<int>(rows.integer(1)),
        .storageNumber = rows.text(2),
        .registrationNumber = rows.text(3),
        .documents = rows.integer(4),
        .shift = rows.integer(5),
        .receiptsInShift = rows.integer(6),
        .shiftOpen = rows.integer(7) != 0,
        .shiftOpenedAt = toTime(rows.integer(8)),
        .freeAt = toTime(rows.integer(9))};
}

void Store::addDocument(const Document& d, const Register& where)
{
    sqlite::Transaction transaction(database_);
    insertDocument_.run(d.uuid, d.groupCode, d.externalId, d.operation, d.login, toNumber(d.receivedAt),
        d.body, d.totalKopecks, d.callbackUrl, d.deviceCode, toNumber(d.readyAt), d.waitsLeft,
        static_cast<int>(d.outcome), toText(d.payload), toText(d.error));
    updateRegister_.run(where.documents, where.shift, where.receiptsInShift, where.shiftOpen,
        toNumber(where.shiftOpenedAt), toNumber(where.freeAt), where.groupCode, where.number);
    transaction.commit();
}

std::optional<Document> Store::findDocument(const std::string& uuid)
{
    sqlite::Rows rows = selectDocument_.rows(uuid);
    if (!rows.next())
        return std::nullopt;
    return Document{.sequence = rows.integer(0),
        .uuid = rows.text(1),
        .groupCode = rows.text(2),
        .externalId = rows.text(3),
        .operation = rows.text(4),
        .login = rows.text(5),
        .receivedAt = toTime(rows.integer(6)),
        .body = rows.text(7),
        .totalKopecks = rows.integer(8),
        .callbackUrl = rows.text(9),
        .deviceCode = rows.text(10),
        .readyAt = toTime(rows.integer(11)),
        .waitsLeft = static_cast<int>(rows.integer(12)),
        .outcome = static_cast<Outcome>(rows.integer(13)),
        .payload = toJson(rows.text(14)),
        .error = toJson(rows.text(15))};
}

std::optional<std::string> Store::findUuid(const std::string& groupCode, const std::string& externalId)
{
    sqlite::Rows rows = selectUuid_.rows(groupCode, externalId);
    return rows.next() ? std::optional(rows.text(0)) : std::nullopt;
}

void Store::setWaitsLeft(const std::int64_t sequence, const int waits)
{
    updateWaits_.run(waits, sequence);
}

} // namespace emulator
