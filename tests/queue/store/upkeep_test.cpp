#include "queue/store/upkeep.h"

#include "tests/queue/store/storetest.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using namespace std::chrono_literals;

class Upkeep : public StoreTest
{
protected:
    Upkeep()
        : claims(store, locks, enrol(store, locks, u"till"_s), 1h)
    {
        for (const char* id : {"r1", "r2", "r3"})
            addOne(store, newEntry(QString::fromLatin1(id)));
    }

    void finish(State state, qint64 document = 7)
    {
        Ending ending = endingAs(state);
        if (ending.evidence)
            ending.evidence->document = document;
        EXPECT_TRUE(claims.conclude(claims.next().value(), ending));
    }

    WorkerLocks locks{store};
    Claims claims;
};

STORE_TEST_SUITE(Upkeep);

TEST_P(Upkeep, CountsWhatBecameOfReceipts)
{
    finish(State::Registered);
    finish(State::Failed);
    const Audit audit = auditOf(store);
    EXPECT_TRUE(audit.isGood()) << audit.findings.join(u' ').toStdString();
    EXPECT_EQ(audit.accepted, 3);
    EXPECT_EQ(audit.registered, 1);
    EXPECT_EQ(audit.refused, 1);
    EXPECT_EQ(audit.underWay, 1);
    EXPECT_EQ(audit.recovered, 0);
}

TEST_P(Upkeep, CountsWhatHappenedLately)
{
    finish(State::Registered);
    const auto before = [&](int seconds, const char* event) {
        store.database().change("INSERT INTO events (at, receipt, event, attempt, worker) SELECT @now - ?, "
                                "number, ?, 1, 0 FROM receipts WHERE id = 'r2'",
            {seconds * 1000, QString::fromLatin1(event)});
    };
    before(70, "finished");
    before(3500, "finished");
    before(3700, "finished");
    before(70, "claimed");
    Store other(place(), u"shop_2"_s);
    addOne(other, newEntry(u"r1"_s));
    const Overview overview = overviewOf(store);
    EXPECT_EQ(overview.added.lastMinute, 3);
    EXPECT_EQ(overview.added.lastHour, 3);
    EXPECT_EQ(overview.finished.lastMinute, 1);
    EXPECT_EQ(overview.finished.lastHour, 3);
}

TEST_P(Upkeep, ShowsAllResultsInOrderHoweverManyThereAre)
{
    finish(State::Registered);
    store.database().transaction([&] {
        for (int i = 0; i < 450; ++i)
            store.note(store.find(u"r1"_s)->number, "finished", 0, 1, QByteArray::number(i));
    });
    QByteArrayList lines;
    qint64 last = 0;
    forEachResult(store, 0, [&](qint64 cursor, const QByteArray& line) {
        EXPECT_GT(cursor, last);
        last = cursor;
        lines << line;
        return lines.size() < 440;
    });
    ASSERT_EQ(lines.size(), 440);
    EXPECT_EQ(lines.last(), "438");
    forEachResult(store, last, [&](qint64, const QByteArray& line) {
        lines << line;
        return true;
    });
    ASSERT_EQ(lines.size(), 451);
    EXPECT_EQ(lines.last(), "449");
}

TEST_P(Upkeep, CountsWhatWasRecovered)
{
    Ending ending = endingAs(State::Registered);
    ending.result = R"({"recovered":true})";
    EXPECT_TRUE(claims.conclude(claims.next().value(), ending));
    EXPECT_EQ(auditOf(store).recovered, 1);
}

TEST_P(Upkeep, FindsADocumentOfTwoReceipts)
{
    finish(State::Registered);
    finish(State::Registered);
    finish(State::Registered, 8);
    const Audit audit = auditOf(store);
    EXPECT_EQ(audit.doubled, 2);
    EXPECT_EQ(audit.findings.size(), 2);
}

TEST_P(Upkeep, FindsWhatIsLost)
{
    finish(State::Registered);
    // As if a hand had been at the file.
    const bool isFile = GetParam() == PlaceKind::Sqlite;
    store.database().change(isFile ? "DROP TRIGGER eventsLast" : "DROP TRIGGER eventsLast ON events");
    store.database().change("DELETE FROM events WHERE event = 'finished' OR receipt = 2");
    store.database().change("DELETE FROM receipts WHERE id = 'r3'");
    const Audit audit = auditOf(store);
    EXPECT_EQ(audit.lost, 3);
    EXPECT_EQ(audit.findings.size(), 3);
}

// As after a change of the configuration.
TEST_P(Upkeep, FindsUnfinishedReceiptsOfAnotherRegister)
{
    Store other(place(), u"shop_2"_s);
    EXPECT_TRUE(unfinishedElsewhere(store).empty());
    addOne(other, newEntry(u"r1"_s));
    addOne(other, newEntry(u"r2"_s));
    EXPECT_EQ(unfinishedElsewhere(store), (std::map<QString, int>{{u"shop_2"_s, 2}}));
    cancel(other, u"r1"_s);
    EXPECT_EQ(unfinishedElsewhere(store), (std::map<QString, int>{{u"shop_2"_s, 1}}));
    EXPECT_EQ(unfinishedElsewhere(other), (std::map<QString, int>{{u"shop_1"_s, 3}}));
    EXPECT_EQ(auditOf(store).underWay, 3);
}

TEST_P(Upkeep, RemovesOnlyWhatFinishedLongAgo)
{
    finish(State::Registered);
    EXPECT_EQ(prune(store, 1h), 0);
    EXPECT_EQ(prune(store, -1h), 1);
    EXPECT_FALSE(store.find(u"r1"_s));
    EXPECT_TRUE(store.find(u"r2"_s));
    const Audit audit = auditOf(store);
    EXPECT_TRUE(audit.isGood());
    EXPECT_EQ(audit.accepted, 2);
}

// Else the audit would miss the receipt for ever.
TEST_P(Upkeep, LeavesNothingThatALateWorkerCouldAddTo)
{
    const Claim claim = claims.next().value();
    EXPECT_TRUE(claims.conclude(claim, endingAs(State::Registered)));
    EXPECT_EQ(prune(store, -1h), 1);
    EXPECT_FALSE(claims.conclude(claim, endingAs(State::Registered)));
    EXPECT_EQ(auditOf(store).findings, QStringList());
}

} // namespace
