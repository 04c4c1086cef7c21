#include "emulator/store/refusals.h"

#include "emulator/store/rows.h"

namespace emulator {

namespace {

constexpr std::int64_t noTotal = -1;

const std::string refusalJoin = " FROM refusals r JOIN exchanges e ON e.sequence = r.exchange";
const std::string refusalColumns = "SELECT e.*, r.operation, r.total, r.fields" + refusalJoin;
const std::string refusalFilter = " WHERE (?1 = '' OR r.group_code = ?1) AND matches(r.external_id, ?2)"
                                  " AND (?3 = '' OR r.operation = ?3)"
                                  " AND (?4 = '' OR instr(e.request, ?4) > 0)";

Refusal readRefusal(const sqlite::Rows& rows)
{
    const std::int64_t total = rows.integer(13);
    return {.exchange = readExchange(rows),
        .operation = rows.text(12),
        .totalKopecks = total == noTotal ? std::nullopt : std::optional(total),
        .fields = Json::parse(rows.text(14))};
}

} // namespace

Refusals::Refusals(const sqlite::Database& database, std::int64_t keptExchanges)
    : kept(keptExchanges)
    , insert(database, "INSERT INTO refusals VALUES(?, ?, ?, ?, ?, ?)")
    , prune(database, "DELETE FROM refusals WHERE exchange <= ?")
    , deleteId(database, "DELETE FROM refusals WHERE external_id = ? AND group_code = ?")
    , selectOne(database, refusalColumns + " WHERE r.exchange = ?")
    , select(database, refusalColumns + refusalFilter + " ORDER BY r.exchange DESC LIMIT ?5")
    , selectCount(database, "SELECT count(*)" + refusalJoin + refusalFilter)
{
}

void Refusals::add(const Refusal& refusal)
{
    const Exchange& exchange = refusal.exchange;
    if (!exchange.externalId.empty())
        forget(exchange.groupCode, exchange.externalId);
    insert.run(exchange.sequence, exchange.groupCode, exchange.externalId, refusal.operation,
        refusal.totalKopecks.value_or(noTotal), toLine(refusal.fields));
    prune.run(exchange.sequence - kept);
}

void Refusals::forget(const std::string& groupCode, const std::string& externalId)
{
    deleteId.run(externalId, groupCode);
}

std::optional<Refusal> Refusals::find(std::int64_t sequence)
{
    sqlite::Rows rows = selectOne.rows(sequence);
    return rows.next() ? std::optional(readRefusal(rows)) : std::nullopt;
}

std::vector<Refusal> Refusals::matching(const DocumentFilter& filter)
{
    sqlite::Rows rows =
        select.rows(filter.group, patternOf(filter.externalId), filter.operation, filter.text, filter.limit);
    std::vector<Refusal> all;
    while (rows.next())
        all.push_back(readRefusal(rows));
    return all;
}

std::int64_t Refusals::count(const DocumentFilter& filter)
{
    sqlite::Rows rows =
        selectCount.rows(filter.group, patternOf(filter.externalId), filter.operation, filter.text);
    return rows.next() ? rows.integer(0) : 0;
}

} // namespace emulator
