#include "emulator/store/store.h"

#include "emulator/store/rows.h"
#include "emulator/store/schema.h"
#include "emulator/values/digest.h"

namespace emulator {

namespace {

constexpr std::int64_t exchangesPerDocument = 4;
// Independent of the number of documents, as a valid token must work; this many take tens of megabytes.
constexpr std::int64_t tokensKept = 100'000;

std::int64_t toNumber(TimePoint time)
{
    return time.time_since_epoch().count();
}

TimePoint toTime(std::int64_t number)
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

Document readDocument(const sqlite::Rows& rows)
{
    return {.sequence = rows.integer(0),
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

std::vector<Exchange> readExchanges(sqlite::Rows rows)
{
    std::vector<Exchange> all;
    while (rows.next())
        all.push_back(readExchange(rows));
    return all;
}

// As Service::statusWord, at the time ?5.
const std::string statusColumn = "CASE WHEN waits_left > 0 OR ready_at > ?5 OR outcome = 2 THEN 'wait'"
                                 " WHEN outcome = 0 THEN 'done' ELSE 'fail' END";
const std::string documentFilter =
    " FROM documents WHERE (?1 = '' OR group_code = ?1) AND matches(external_id, ?2)"
    " AND (?3 = '' OR operation = ?3)"
    " AND (?4 = '' OR instr(uuid || ' ' || external_id || ' ' || body, ?4) > 0)";

} // namespace

Store::Store(const std::string& file, std::int64_t keep)
    : stateFile(file)
    , database(file, prepare)
    , documentsKept(keep)
    , insertToken(database, "INSERT INTO tokens VALUES(NULL, ?, ?, ?)")
    , pruneTokens(database, "DELETE FROM tokens WHERE sequence <= ?")
    , selectToken(database, "SELECT login, expires_at FROM tokens WHERE digest = ?")
    , insertRegister(database, "INSERT INTO registers VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
    , countRegisters(database, "SELECT count(*), count(*) FILTER (WHERE group_code = ?) FROM registers")
    , selectRegister(database, "SELECT * FROM registers WHERE group_code = ? AND number <= ?"
                               " ORDER BY free_at, documents, number LIMIT 1")
    , updateRegister(database,
          "UPDATE registers SET documents = ?, shift = ?, receipts_in_shift = ?, shift_open = ?,"
          " shift_opened_at = ?, free_at = ? WHERE group_code = ? AND number = ?")
    , insertDocument(
          database, "INSERT INTO documents VALUES(NULL, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
    , pruneDocuments(database, "DELETE FROM documents WHERE sequence <= ?")
    , selectDocument(database, "SELECT * FROM documents WHERE uuid = ?")
    , selectDocuments(database, "SELECT *" + documentFilter + " AND (?6 = '' OR " + statusColumn +
                                    " = ?6) AND (?7 = 0 OR sequence < ?7) ORDER BY sequence DESC LIMIT ?8")
    , countDocuments(database, "SELECT " + statusColumn + ", count(*)" + documentFilter + " GROUP BY 1")
    , selectUuid(database, "SELECT uuid FROM documents WHERE group_code = ? AND external_id = ?")
    , updateWaits(database, "UPDATE documents SET waits_left = ? WHERE sequence = ?")
    , upsertWire(database, "INSERT INTO register_calls VALUES(NULL, ?, ?, ?, 1)"
                           " ON CONFLICT(group_code, external_id, operation)"
                           " DO UPDATE SET requests = requests + 1 RETURNING sequence")
    , selectWire(
          database, "SELECT sum(requests) FROM register_calls WHERE group_code = ? AND external_id = ?")
    , selectWires(database, "SELECT group_code, external_id, sum(requests) FROM register_calls"
                            " WHERE (?1 = '' OR group_code = ?1) AND matches(external_id, ?2)"
                            " AND (?3 = '' OR operation = ?3) GROUP BY group_code, external_id")
    , insertExchange(database, "INSERT INTO exchanges VALUES(NULL, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
    , pruneExchanges(database, "DELETE FROM exchanges WHERE sequence <= ?")
    , selectExchanges(database,
          "SELECT * FROM (SELECT * FROM exchanges WHERE external_id = ?1 AND (?2 = '' OR group_code = ?2)"
          " AND sequence > ?3 AND (?4 = 0 OR sequence < ?4) ORDER BY sequence DESC LIMIT ?5)"
          " ORDER BY sequence")
    , selectNewest(database,
          "SELECT * FROM exchanges WHERE ?1 = '' OR group_code = ?1 ORDER BY sequence DESC LIMIT ?2")
    , selectOldest(database,
          "SELECT * FROM exchanges WHERE (?1 = '' OR group_code = ?1 OR endpoint = 'token')"
          " AND sequence > ?2 AND (?3 = 0 OR sequence < ?3) ORDER BY sequence LIMIT ?4")
    , selectLast(database, "SELECT ifnull(max(sequence), 0) FROM exchanges")
    , pruneWire(database, "DELETE FROM register_calls WHERE sequence <= ?")
    , refusalTable(database, exchangesPerDocument * keep)
{
}

void Store::addToken(const std::string& token, const Token& about)
{
    insertToken.run(digestOf(token), about.login, toNumber(about.expiresAt));
    pruneTokens.run(database.lastInsertId() - tokensKept);
}

std::optional<Token> Store::findToken(const std::string& token)
{
    sqlite::Rows rows = selectToken.rows(digestOf(token));
    if (!rows.next())
        return std::nullopt;
    return Token{.login = rows.text(0), .expiresAt = toTime(rows.integer(1))};
}

void Store::prepareRegisters(const std::string& groupCode, int count)
{
    sqlite::Transaction transaction(database);
    std::int64_t all = 0;
    int ofGroup = 0;
    {
        sqlite::Rows rows = countRegisters.rows(groupCode);
        rows.next();
        all = rows.integer(0);
        ofGroup = static_cast<int>(rows.integer(1));
    }
    for (int number = ofGroup + 1; number <= count; ++number) {
        const Register fresh = newRegister(groupCode, number, ++all);
        insertRegister.run(groupCode, number, fresh.storageNumber, fresh.registrationNumber, fresh.documents,
            fresh.shift, fresh.receiptsInShift, fresh.shiftOpen, toNumber(fresh.shiftOpenedAt),
            toNumber(fresh.freeAt));
    }
    transaction.commit();
}

Register Store::freestRegister(const std::string& groupCode, int count)
{
    sqlite::Rows rows = selectRegister.rows(groupCode, count);
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

void Store::saveRegister(const Register& where)
{
    updateRegister.run(where.documents, where.shift, where.receiptsInShift, where.shiftOpen,
        toNumber(where.shiftOpenedAt), toNumber(where.freeAt), where.groupCode, where.number);
}

void Store::addDocument(Document& document)
{
    insertDocument.run(document.uuid, document.groupCode, document.externalId, document.operation,
        document.login, toNumber(document.receivedAt), document.body, document.totalKopecks,
        document.callbackUrl, document.deviceCode, toNumber(document.readyAt), document.waitsLeft,
        static_cast<int>(document.outcome), toText(document.payload), toText(document.error));
    document.sequence = database.lastInsertId();
    pruneDocuments.run(document.sequence - documentsKept);
}

std::optional<Document> Store::findDocument(const std::string& uuid)
{
    sqlite::Rows rows = selectDocument.rows(uuid);
    return rows.next() ? std::optional(readDocument(rows)) : std::nullopt;
}

std::vector<Document> Store::documents(const DocumentFilter& filter)
{
    sqlite::Rows rows = selectDocuments.rows(filter.group, patternOf(filter.externalId), filter.operation,
        filter.text, toNumber(filter.now), filter.status, filter.before, filter.limit);
    std::vector<Document> all;
    while (rows.next())
        all.push_back(readDocument(rows));
    return all;
}

std::map<std::string, std::int64_t> Store::documentCounts(const DocumentFilter& filter)
{
    sqlite::Rows rows = countDocuments.rows(
        filter.group, patternOf(filter.externalId), filter.operation, filter.text, toNumber(filter.now));
    std::map<std::string, std::int64_t> all;
    while (rows.next())
        all[rows.text(0)] = rows.integer(1);
    return all;
}

std::optional<std::string> Store::findUuid(const std::string& groupCode, const std::string& externalId)
{
    sqlite::Rows rows = selectUuid.rows(groupCode, externalId);
    return rows.next() ? std::optional(rows.text(0)) : std::nullopt;
}

void Store::setWaitsLeft(std::int64_t sequence, int waits)
{
    updateWaits.run(waits, sequence);
}

void Store::countRequest(
    const std::string& groupCode, const std::string& externalId, const std::string& operation)
{
    std::int64_t sequence = 0;
    {
        sqlite::Rows rows = upsertWire.rows(groupCode, externalId, operation);
        while (rows.next())
            sequence = rows.integer(0);
    }
    pruneWire.run(sequence - exchangesPerDocument * documentsKept);
}

std::int64_t Store::requests(const std::string& groupCode, const std::string& externalId)
{
    sqlite::Rows rows = selectWire.rows(groupCode, externalId);
    return rows.next() ? rows.integer(0) : 0;
}

std::vector<WireCount> Store::wireCounts(
    const std::string& group, const std::string& idPattern, const std::string& operation)
{
    sqlite::Rows rows = selectWires.rows(group, patternOf(idPattern), operation);
    std::vector<WireCount> all;
    while (rows.next())
        all.push_back({rows.text(0), rows.text(1), rows.integer(2)});
    return all;
}

void Store::addExchange(Exchange& exchange)
{
    insertExchange.run(toNumber(exchange.at), nameOf(exchange.endpoint), exchange.groupCode,
        exchange.externalId, exchange.uuid, exchange.login, exchange.request, exchange.answer,
        exchange.status, exchange.code.value_or(noCode), exchange.fault);
    exchange.sequence = database.lastInsertId();
    pruneExchanges.run(exchange.sequence - exchangesPerDocument * documentsKept);
}

std::vector<Exchange> Store::exchanges(
    const std::string& groupCode, const std::string& externalId, const ExchangeRange& range)
{
    return readExchanges(selectExchanges.rows(externalId, groupCode, range.after, range.before, range.limit));
}

std::vector<Exchange> Store::newestExchanges(const std::string& groupCode, int limit)
{
    return readExchanges(selectNewest.rows(groupCode, limit));
}

std::vector<Exchange> Store::oldestExchanges(const std::string& groupCode, const ExchangeRange& range)
{
    return readExchanges(selectOldest.rows(groupCode, range.after, range.before, range.limit));
}

std::int64_t Store::newestSequence()
{
    sqlite::Rows rows = selectLast.rows();
    return rows.next() ? rows.integer(0) : 0;
}

void Store::clear()
{
    database.execute("DELETE FROM documents; DELETE FROM exchanges; DELETE FROM register_calls;"
                     " DELETE FROM refusals");
}

} // namespace emulator
