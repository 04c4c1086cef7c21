#include "queue/store/claims.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace queue {

namespace {

// A receipt is never put off for longer. One that is due later than that waits for a clock that was set back.
constexpr int mostPutOff = 60'000;

// An entry: the oldest of those that were never put off, of those whose time has come, and of those that
// would wait for a clock, each found by one step in the index. With "due = 0" PostgreSQL would walk along all
// receipts by number instead.
QByteArray dueEntry()
{
    QByteArray branches;
    for (const char* due :
        {"due <= 0 ORDER BY due, number", "due > 0 AND due <= (SELECT now FROM t) ORDER BY due",
            "due > (SELECT now + most FROM t) ORDER BY due"}) {
        branches += QByteArray(branches.isEmpty() ? "" : " UNION ALL ") + "SELECT * FROM (SELECT " +
                    entryColumns +
                    " FROM receipts WHERE register = (SELECT ours FROM t) AND held = 0"
                    " AND @waits AND " +
                    due + " LIMIT 1 @free) AS branch";
    }
    return "SELECT * FROM (" + branches + ") AS one ORDER BY number LIMIT 1";
}

// When a worker was heard of, in milliseconds. With a file, by a clock that nobody sets: else all would count
// as overdue while the machine's is being set. None on a server, where the server's clock tells.
QVariant heardAt(Store& store)
{
    using std::chrono::steady_clock;
    if (till::isOnServer(store.place()))
        return {};
    const auto sinceStart = steady_clock::now().time_since_epoch();
    return static_cast<qint64>(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

} // namespace

qint64 enrol(Store& store, WorkerLocks& locks, const QString& name)
{
    qint64 worker = 0;
    // Others see the worker only once it has its lock.
    store.database().transaction([&] {
        worker = store.database()
                     .value("INSERT INTO workers (name, seen) VALUES (?, coalesce(?, @now)) RETURNING number",
                         {name, heardAt(store)})
                     .toLongLong();
        locks.take(worker);
    });
    return worker;
}

Claims::Claims(
    Store& usedStore, const WorkerLocks& usedLocks, qint64 usedWorker, std::chrono::milliseconds usedLease)
    : store(usedStore)
    , locks(usedLocks)
    , worker(usedWorker)
    , lease(usedLease)
{
}

std::optional<Claim> Claims::next()
{
    return till::isOnServer(store.place()) ? nextOnServer() : nextInFile();
}

// One message each way. The entry comes from the rows that are locked: what the rest of the statement sees
// may be older.
std::optional<Claim> Claims::nextOnServer()
{
    static const QByteArray statement =
        "WITH t AS (SELECT @now AS now, CAST(? AS bigint) AS ours, CAST(? AS bigint) AS most),"
        " due AS MATERIALIZED (" +
        dueEntry() +
        "), claimed AS (UPDATE receipts SET earlier = state, state = 'sent', worker = ?,"
        "  attempt = attempt + 1, maybeSent = 1, changed = (SELECT now FROM t) WHERE number = (SELECT number "
        "FROM due)"
        "  RETURNING number AS receipt, attempt AS claim, worker AS owner, changed AS at),"
        " noted AS (INSERT INTO events (at, receipt, event, attempt, worker)"
        "  SELECT at, receipt, 'claimed', claim, owner FROM claimed)"
        " SELECT due.* FROM due CROSS JOIN claimed";
    std::optional<Claim> claim;
    store.database().forEachPlanned(
        statement.constData(), {store.registerNumber(), mostPutOff, worker}, [&](const QSqlQuery& row) {
            const Entry entry = entryIn(row);
            claim = Claim{entry, entry.attempt + 1};
        });
    return claim;
}

std::optional<Claim> Claims::nextInFile()
{
    static const QByteArray statement = "WITH t AS (SELECT @now AS now, ? AS ours, ? AS most) " + dueEntry();
    const auto look = [&] {
        std::optional<Entry> entry;
        store.database().forEach(statement.constData(), {store.registerNumber(), mostPutOff},
            [&](const QSqlQuery& row) { entry = entryIn(row); });
        return entry;
    };
    std::optional<Claim> claim;
    // An idle worker does not lock the file.
    if (isIdle && !look())
        return claim;
    store.database().transaction([&] {
        const auto entry = look();
        isIdle = !entry;
        if (!entry)
            return;
        store.database().change(
            "UPDATE receipts SET earlier = state, state = 'sent', worker = ?, attempt = attempt + 1,"
            " maybeSent = 1, changed = @now WHERE number = ?",
            {worker, entry->number});
        store.note(entry->number, "claimed", worker, entry->attempt + 1);
        claim = Claim{*entry, entry->attempt + 1};
    });
    return claim;
}

bool Claims::holds(const Claim& claim)
{
    return store.database()
        .value(
            "SELECT number FROM receipts WHERE number = ? AND state = 'sent' AND attempt = ? AND worker = ?",
            {claim.entry.number, claim.attempt, worker})
        .isValid();
}

bool Claims::noteContent(const Claim& claim, const QByteArray& digest)
{
    bool isOurs = false;
    store.database().transaction([&] {
        isOurs =
            store.database().change("UPDATE receipts SET digest = ?"
                                    " WHERE number = ? AND state = 'sent' AND attempt = ? AND worker = ?",
                {claim.entry.maybeSent ? QByteArray("") : digest, claim.entry.number, claim.attempt,
                    worker}) == 1;
        if (isOurs)
            store.note(claim.entry.number, "recomposed", worker, claim.attempt);
    });
    return isOurs;
}

bool Claims::conclude(const Claim& claim, const Ending& ending)
{
    const auto proof = ending.evidence.value_or(till::JournalEvidence{});
    const auto proven = [&](const QVariant& value) { return ending.evidence ? value : QVariant(); };
    const auto delay = static_cast<qint64>(ending.delay.count());
    bool holds = false;
    store.database().transaction([&] {
        holds =
            store.database().change(
                "UPDATE receipts SET state = ?, held = ?, worker = 0, maybeSent = ?, fruitless = ?,"
                " due = CASE WHEN ? = 0 THEN 0 ELSE"
                "  ? + @now END,"
                " uuid = coalesce(nullif(?, ''), uuid), storage = coalesce(?, storage),"
                " document = coalesce(?, document), sign = coalesce(?, sign), total = coalesce(?, total),"
                " changed = @now"
                " WHERE number = ? AND state = 'sent' AND attempt = ? AND worker = ?",
                {nameOf(ending.state), ending.isHeld, ending.maybeSent, ending.fruitless, delay, delay,
                    ending.uuid.isNull() ? u""_s : ending.uuid, proven(proof.storage), proven(proof.document),
                    proven(proof.sign), proven(proof.total), claim.entry.number, claim.attempt, worker}) == 1;
        // What was removed in the meantime has no history to append to. Else nobody removes it now.
        if (!holds &&
            !store.database()
                 .value("SELECT number FROM receipts WHERE number = ? @locked", {claim.entry.number})
                 .isValid())
            return;
        if (holds && isFinished(ending.state))
            store.database().change("@inOrder", {store.registerNumber()});
        // What another machine has said of the register is over.
        if (holds && ending.state == State::Registered)
            store.database().change("UPDATE registers SET trouble = '' WHERE number = ? AND trouble <> ''",
                {store.registerNumber()});
        const char* const event = !holds                     ? "stale"
                                  : isFinished(ending.state) ? "finished"
                                  : ending.isHeld            ? "setAside"
                                                             : "returned";
        store.note(claim.entry.number, event, worker, claim.attempt, ending.result);
    });
    return holds;
}

void Claims::beat()
{
    store.database().change("UPDATE workers SET"
                            " seen = coalesce(?, @now)"
                            " WHERE number = ?",
        {heardAt(store), worker});
}

// Also of those who have ended and have receipts all the same: one that was called dead by mistake works on.
int Claims::takeOver()
{
    struct Other
    {
        qint64 number;
        bool isOverdue;
    };
    std::vector<Other> others;
    QSqlQuery row = store.database().query("SELECT number, abs(seen - coalesce(?, @now)) > ?"
                                           " FROM workers WHERE number <> ?"
                                           " AND (ended = 0 OR number IN (SELECT worker FROM receipts WHERE"
                                           " state = 'sent'))",
        {heardAt(store), static_cast<qint64>(lease.count()), worker});
    while (row.next())
        others.push_back({row.value(0).toLongLong(), row.value(1).toBool()});
    row.finish();
    int taken = 0;
    for (const Other& other : others) {
        if (const bool isDead = !locks.isTaken(store, other.number); isDead || other.isOverdue)
            taken += takeFrom(other.number, isDead);
    }
    return taken;
}

int Claims::takeFrom(qint64 other, bool isDead)
{
    std::vector<Entry> entries;
    store.database().transaction([&] {
        store.forEach("worker = ? AND state = 'sent' ORDER BY number @locked", {other},
            [&](const Entry& entry) { entries.push_back(entry); });
        for (const Entry& entry : entries) {
            store.database().change("UPDATE receipts SET worker = 0, due = 0, changed = @now, state ="
                                    " CASE earlier WHEN 'incomplete' THEN 'incomplete' ELSE 'unknown' END"
                                    " WHERE number = ? AND state = 'sent' AND attempt = ?",
                {entry.number, entry.attempt});
            store.note(entry.number, "takenOver", worker, entry.attempt);
        }
        if (isDead)
            store.database().change("UPDATE workers SET ended = 1 WHERE number = ?", {other});
    });
    return static_cast<int>(entries.size());
}

void Claims::leave()
{
    store.database().change("UPDATE workers SET ended = 1 WHERE number = ?", {worker});
}

bool Claims::isDone()
{
    return store.database()
               .value("SELECT EXISTS (SELECT 1 FROM receipts WHERE register = ? AND held = 0"
                      " AND @waits)"
                      " OR EXISTS (SELECT 1 FROM receipts WHERE register = ? AND state = 'sent')",
                   {store.registerNumber(), store.registerNumber()})
               .toInt() == 0;
}

void Claims::setTrouble(const QString& text)
{
    // A null text would be stored as NULL.
    const QString trouble = text.isNull() ? u""_s : text;
    store.database().change("UPDATE registers SET trouble = ? WHERE number = ? AND trouble <> ?",
        {trouble, store.registerNumber(), trouble});
}

} // namespace queue
