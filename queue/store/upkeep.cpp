#include "queue/store/upkeep.h"

#include "queue/store/views.h"
#include "till/text.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

constexpr int mostAtOnce = 500;

void addTo(Audit& audit, const StateCount& count)
{
    audit.accepted += count.receipts;
    int& kind = count.state == State::Registered ? audit.registered
                : isFinished(count.state)        ? audit.refused
                                                 : audit.underWay;
    kind += count.receipts;
}

// Runs a query for receipts that are wrong; its rows are their ids. Returns how many there are.
int findings(
    Audit& audit, Store& store, const QString& what, const char* statement, const QVariantList& values)
{
    int found = 0;
    QSqlQuery row = store.database().query(statement, values);
    for (; row.next(); ++found)
        audit.findings << u"%1: %2"_s.arg(row.value(0).toString(), what);
    return found;
}

} // namespace

Audit auditOf(Store& store)
{
    Audit audit;
    const qint64 ours = store.registerNumber();
    store.database().snapshot([&] {
        for (const StateCount& count : countsOf(store))
            addTo(audit, count);
        audit.recovered =
            store.database()
                .value("SELECT count(*) FROM receipts WHERE register = ? AND state = 'registered'"
                       " AND EXISTS (SELECT 1 FROM events WHERE receipt = receipts.number"
                       "  AND event = 'finished' AND @isRecovered)",
                    {ours})
                .toInt();
        audit.lost += findings(audit, store, Text::tr("nothing says how it was stored"),
            "SELECT id FROM receipts WHERE register = ? AND NOT EXISTS"
            " (SELECT 1 FROM events WHERE receipt = receipts.number AND event = 'added')",
            {ours});
        audit.lost += findings(audit, store, Text::tr("it is finished, and its result is missing"),
            "SELECT id FROM receipts WHERE register = ? AND state IN ('registered', 'refused', 'failed')"
            " AND NOT EXISTS (SELECT 1 FROM events WHERE receipt = receipts.number AND event = 'finished'"
            "  AND detail IS NOT NULL)",
            {ours});
        audit.lost += findings(audit, store, Text::tr("it has a history and is not there"),
            "SELECT DISTINCT '#' || receipt FROM events"
            " WHERE NOT EXISTS (SELECT 1 FROM receipts WHERE number = receipt)",
            {});
        audit.doubled = findings(audit, store, Text::tr("it has the document of another receipt"),
            "SELECT id FROM receipts AS one WHERE register = ? AND state = 'registered' AND EXISTS"
            " (SELECT 1 FROM receipts AS other WHERE other.number <> one.number"
            "  AND other.state = 'registered' AND other.storage = one.storage AND other.document = "
            "one.document)",
            {ours});
        const QString damage = store.database().value("@damage").toString();
        if (damage != "ok"_L1)
            audit.findings << Text::tr("the file is damaged: %1").arg(damage);
    });
    return audit;
}

int prune(Store& store, std::chrono::milliseconds age)
{
    int removed = 0;
    for (int last = 1; last > 0; removed += last) {
        std::vector<qint64> old;
        store.database().transaction([&] {
            QSqlQuery row =
                store.database().query("SELECT number FROM receipts WHERE register = ?"
                                       " AND state IN ('registered', 'refused', 'failed', 'cancelled')"
                                       " AND changed < @now - ? LIMIT ? @locked",
                    {store.registerNumber(), static_cast<qint64>(age.count()), mostAtOnce});
            while (row.next())
                old.push_back(row.value(0).toLongLong());
            row.finish();
            // The file accepts the removal of a history only when its receipt is gone.
            for (const qint64 number : old) {
                store.database().change("DELETE FROM receipts WHERE number = ?", {number});
                store.database().change("DELETE FROM events WHERE receipt = ?", {number});
            }
        });
        last = static_cast<int>(old.size());
    }
    return removed;
}

} // namespace queue
