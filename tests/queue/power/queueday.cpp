#include "tests/queue/power/scenarios.h"

#include "queue/store/upkeep.h"
#include "tests/queue/store/storetest.h"
#include "till/error.h"

#include <QSqlRecord>

using namespace Qt::Literals::StringLiterals;

namespace power {

namespace {

using namespace queue;
using namespace std::chrono_literals;

// A line for each row, with all of its columns.
QByteArray contentOf(Store& store)
{
    QByteArray content;
    for (const char* table : {"registers", "workers", "receipts", "events", "sqlite_sequence"}) {
        QSqlQuery row = store.database().query(QByteArray("SELECT * FROM ").append(table).constData());
        const int columns = row.record().count();
        while (row.next()) {
            content += table;
            for (int i = 0; i < columns; ++i)
                content += ' ' + row.value(i).toByteArray();
            content += '\n';
        }
    }
    return content;
}

Ending endingOf(const Claim& claim, State state)
{
    Ending ending = endingAs(state);
    // No two receipts have the same document.
    if (ending.evidence)
        ending.evidence->document = claim.entry.number;
    return ending;
}

class Day
{
public:
    Day(const QString& folder, RecordingVfs& usedVfs, const char* usedSetting)
        : place(folder + u"/queue.db"_s)
        , vfs(usedVfs)
        , setting(usedSetting)
    {
    }

    void run()
    {
        oneWorker();
        severalWorkers();
        nextMorning();
    }

private:
    // The log is checkpointed more often than by default, so that this happens in the middle, too.
    std::unique_ptr<Store> opened()
    {
        auto store = std::make_unique<Store>(place, u"shop_1"_s);
        store->database().change("PRAGMA wal_autocheckpoint = 40");
        store->database().change(setting);
        vfs.promise(contentOf(*store));
        return store;
    }

    void after(Store& store, const std::function<void()>& operation)
    {
        operation();
        vfs.promise(contentOf(store));
    }

    Claim claimed(Store& store, Claims& claims)
    {
        const Claim claim = claims.next().value();
        vfs.promise(contentOf(store));
        return claim;
    }

    void conclude(Store& store, Claims& claims, const Claim& claim, State state)
    {
        after(store, [&] { claims.conclude(claim, endingOf(claim, state)); });
    }

    void addSeveral(Store& store, const QStringList& ids, const char* goods)
    {
        after(store, [&] {
            storeAll(store, [&](const auto& add) {
                for (const QString& id : ids)
                    std::ignore = add(newEntry(id, goods));
            });
        });
    }

    void oneWorker()
    {
        const auto store = opened();
        addSeveral(*store, {u"r1"_s, u"r2"_s, u"r3"_s}, "milk");
        WorkerLocks locks(*store);
        Claims claims(*store, locks, enrol(*store, locks, u"till"_s), 1h);
        vfs.promise(contentOf(*store));
        after(*store, [&] { claims.setTrouble(u"the password is wrong"_s); });
        const Claim first = claimed(*store, claims);
        after(*store, [&] { std::ignore = claims.noteContent(first, "another digest"); });
        conclude(*store, claims, first, State::Registered);
        conclude(*store, claims, claimed(*store, claims), State::Unknown);
        after(*store, [&] { hold(*store, u"r3"_s); });
        after(*store, [&] { release(*store, u"r3"_s); });
        after(*store, [&] { cancel(*store, u"r3"_s); });
        after(*store, [&] { replace(*store, u"r3"_s, newEntry(u"r4"_s)); });
        conclude(*store, claims, claimed(*store, claims), State::Refused);
        after(*store, [&] { retry(*store, u"r2"_s); });
        after(*store, [&] { claims.beat(); });
        conclude(*store, claims, claimed(*store, claims), State::Failed);
        after(*store, [&] { claims.leave(); });
    }

    void severalWorkers()
    {
        const auto store = opened();
        const auto other = opened();
        const auto reader = opened();
        vfs.setBeforeSyncOfLog([&] { vfs.promise(contentOf(*reader)); });
        // Longer than a page.
        addSeveral(*store, {u"b1"_s, u"b2"_s, u"b3"_s, u"b4"_s}, QByteArray(9000, 'x').constData());
        after(*store, [&] { store->database().change("PRAGMA wal_checkpoint(PASSIVE)"); });
        WorkerLocks locks(*store);
        const qint64 worker = enrol(*store, locks, u"till"_s);
        Claims claims(*store, locks, worker, 1h);
        vfs.promise(contentOf(*store));
        {
            WorkerLocks otherLocks(*other);
            Claims others(*other, otherLocks, enrol(*other, otherLocks, u"dies"_s), 1h);
            vfs.promise(contentOf(*store));
            std::ignore = claimed(*other, others);
            const Claim late = claimed(*other, others);
            after(*store, [&] { claims.setTrouble({}); });
            Claims impatient(*store, locks, worker, -1ms);
            after(*store, [&] { impatient.takeOver(); });
            conclude(*other, others, late, State::Registered);
        }
        for (const State state : {State::Registered, State::Incomplete, State::Registered, State::Unknown})
            conclude(*store, claims, claimed(*store, claims), state);
        after(*store, [&] { store->database().change("PRAGMA wal_checkpoint(TRUNCATE)"); });
        conclude(*store, claims, claimed(*store, claims), State::Registered);
        after(*store, [&] { claims.leave(); });
        vfs.setBeforeSyncOfLog({});
    }

    void nextMorning()
    {
        const auto store = opened();
        after(*store, [&] { prune(*store, -1ms); });
        addSeveral(*store, {u"n1"_s, u"n2"_s}, "bread");
        WorkerLocks locks(*store);
        Claims claims(*store, locks, enrol(*store, locks, u"till"_s), 1h);
        vfs.promise(contentOf(*store));
        after(*store, [&] { claims.takeOver(); });
        std::ignore = claimed(*store, claims);
    }

    QString place;
    RecordingVfs& vfs;
    const char* setting;
};

void require(bool isSo, const QString& otherwise)
{
    if (!isSo)
        throw till::Error(till::Problem::Setup, otherwise);
}

void requireSound(Store& store)
{
    const Audit audit = auditOf(store);
    require(audit.isGood(), audit.findings.join(u"; "_s));
}

QByteArray contentAfterCut(const QString& folder)
{
    Store store(folder + u"/queue.db"_s, u"shop_1"_s, 100ms);
    requireSound(store);
    const QByteArray content = contentOf(store);
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"after"_s), 1h);
    claims.takeOver();
    addOne(store, newEntry(u"after"_s));
    const auto claim = claims.next();
    require(claim.has_value(), u"nothing can be claimed"_s);
    require(claims.conclude(*claim, endingOf(*claim, State::Registered)), u"a claim cannot be ended"_s);
    require(store.database().value("SELECT count(*) FROM receipts WHERE state = 'sent'").toInt() == 0,
        u"what was under way is not taken over"_s);
    requireSound(store);
    return content;
}

} // namespace

Scenario queueDay(const char* setting)
{
    return {[setting](const QString& folder, RecordingVfs& vfs) { Day(folder, vfs, setting).run(); },
        contentAfterCut};
}

} // namespace power
