#include "queue/store/views.h"

namespace queue {

void forEachEntry(Store& store, std::optional<State> state, const std::function<void(const Entry&)>& handle)
{
    if (state)
        store.forEach(
            "register = ? AND state = ? ORDER BY number", {store.registerNumber(), nameOf(*state)}, handle);
    else
        store.forEach("register = ? ORDER BY number", {store.registerNumber()}, handle);
}

std::vector<Event> historyOf(Store& store, const Entry& entry)
{
    std::vector<Event> events;
    QSqlQuery row = store.database().query(
        "SELECT events.number, at, event, attempt, coalesce(name, ''), detail FROM events"
        " LEFT JOIN workers ON workers.number = events.worker WHERE receipt = ? ORDER BY events.number",
        {entry.number});
    while (row.next())
        events.push_back({row.value(0).toLongLong(), row.value(1).toLongLong(), row.value(2).toString(),
            row.value(3).toInt(), row.value(4).toString(), row.value(5).toByteArray()});
    return events;
}

namespace {

// Results are numbered before they are committed. When nobody is between the two, those up to the last are
// all there.
qint64 lastResult(Store& store)
{
    QVariant last;
    const auto look = [&] {
        store.database().change("@orderKnown", {store.registerNumber()});
        last = store.database().value("SELECT max(number) FROM events WHERE event = 'finished'");
    };
    if (till::isOnServer(store.place()))
        store.database().transaction(look);
    else
        look();
    return last.toLongLong();
}

struct Result
{
    qint64 cursor;
    QByteArray line;
};

constexpr std::size_t atOnce = 200;

std::vector<Result> resultsBetween(Store& store, qint64 after, qint64 last)
{
    std::vector<Result> results;
    store.database().forEach(
        "SELECT events.number, detail FROM events JOIN receipts ON receipts.number = receipt"
        " WHERE event = 'finished' AND events.number > ? AND events.number <= ? AND register = ?"
        " ORDER BY events.number LIMIT ?",
        {after, last, store.registerNumber(), static_cast<qint64>(atOnce)}, [&](const QSqlQuery& row) {
            results.push_back({row.value(0).toLongLong(), row.value(1).toByteArray()});
        });
    return results;
}

} // namespace

// While they are handled, nothing is open that would keep the file's log from being emptied: a person may be
// paging through them.
void forEachResult(
    Store& store, qint64 after, const std::function<bool(qint64 cursor, const QByteArray& line)>& handle)
{
    const qint64 last = lastResult(store);
    std::vector<Result> results;
    do {
        results = resultsBetween(store, after, last);
        for (const Result& result : results) {
            if (!handle(result.cursor, result.line))
                return;
            after = result.cursor;
        }
    } while (results.size() == atOnce);
}

QByteArray resultOf(Store& store, const Entry& entry)
{
    return store.database()
        .value("SELECT detail FROM events WHERE receipt = ? AND event = 'finished'"
               " ORDER BY number DESC LIMIT 1",
            {entry.number})
        .toByteArray();
}

std::vector<StateCount> countsOf(Store& store)
{
    std::vector<StateCount> counts;
    store.database().forEach(
        "SELECT state, count(*), sum(held) FROM receipts WHERE register = ? GROUP BY state",
        {store.registerNumber()}, [&](const QSqlQuery& row) {
            counts.push_back({stateOf(row.value(0).toString()).value_or(State::Unknown), row.value(1).toInt(),
                row.value(2).toInt()});
        });
    return counts;
}

std::map<QString, int> unfinishedElsewhere(Store& store)
{
    std::map<QString, int> receipts;
    store.database().forEach("SELECT address, count(*) FROM receipts"
                             " JOIN registers ON registers.number = register"
                             " WHERE register <> ? AND state IN ('queued', 'sent', 'unknown', 'incomplete')"
                             " GROUP BY address",
        {store.registerNumber()},
        [&](const QSqlQuery& row) { receipts[row.value(0).toString()] = row.value(1).toInt(); });
    return receipts;
}

QString troubleOf(Store& store)
{
    return store.database()
        .value("SELECT trouble FROM registers WHERE number = ?", {store.registerNumber()})
        .toString();
}

namespace {

Rate rateOf(Store& store, const char* event)
{
    QSqlQuery row = store.database().query(
        "WITH t AS (SELECT @now AS now)"
        " SELECT count(*) FILTER (WHERE at > (SELECT now FROM t) - 60000), count(*) FROM events"
        " JOIN receipts ON receipts.number = receipt"
        " WHERE event = ? AND at > (SELECT now FROM t) - 3600000 AND register = ?",
        {QString::fromLatin1(event), store.registerNumber()});
    return row.next() ? Rate{row.value(0).toInt(), row.value(1).toInt()} : Rate{};
}

} // namespace

Overview overviewOf(Store& store)
{
    Overview overview;
    const QVariantList ofRegister{store.registerNumber()};
    for (const StateCount& count : countsOf(store)) {
        overview.receipts[count.state] = count.receipts;
        overview.held += count.held;
    }
    QSqlQuery row = store.database().query("SELECT event, count(*) FROM events"
                                           " JOIN receipts ON receipts.number = receipt WHERE register = ?"
                                           " GROUP BY event",
        ofRegister);
    while (row.next())
        overview.events[row.value(0).toString()] = row.value(1).toInt();
    overview.added = rateOf(store, "added");
    overview.finished = rateOf(store, "finished");
    const QVariant oldest = store.database().value(
        "SELECT @now - min(added) FROM receipts"
        " WHERE register = ? AND held = 0 AND state IN ('queued', 'sent', 'unknown', 'incomplete')",
        ofRegister);
    if (!oldest.isNull())
        overview.oldest = std::chrono::milliseconds(std::max<qint64>(0, oldest.toLongLong()));
    overview.trouble = troubleOf(store);
    return overview;
}

} // namespace queue
