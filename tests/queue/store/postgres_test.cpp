#include "tests/queue/store/postgresserver.h"
#include "tests/queue/store/storetest.h"

#include "queue/store/storeerror.h"
#include "tests/support/process.h"
#include "tests/support/textfile.h"

#include <array>
#include <future>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using namespace std::chrono_literals;

class StoreOnPostgreSQL : public testing::Test
{
protected:
    void SetUp() override
    {
        if (const QString why = PostgresServer::whyMissing(); !why.isEmpty())
            GTEST_SKIP() << why.toStdString();
        place = PostgresServer::instance().newPlace();
    }
    [[nodiscard]] std::optional<StoreError> errorOf(const std::function<void()>& action) const
    {
        try {
            action();
        } catch (const StoreError& error) {
            return error;
        }
        return std::nullopt;
    }
    [[nodiscard]] QString complaint() const
    {
        const QString start = place + u": the queue cannot be used: "_s;
        const QString message = messageOf<StoreError>([&] { const Store other(place, u"shop_1"_s); });
        return message.startsWith(start) ? message.sliced(start.size()) : message;
    }

    static void queueMany(Store& store, int first, int last)
    {
        store.database().change(
            "INSERT INTO receipts (register, id, file, line, text, digest, added, changed)"
            " SELECT ?, i::text, '', i, 't', 'd', @now, @now FROM generate_series(?, ?) AS i",
            {store.registerNumber(), first, last});
    }
    [[nodiscard]] static qint64 rowsRead(Store& store)
    {
        store.database().change("SELECT pg_stat_force_next_flush()");
        return store.database()
            .value("SELECT idx_tup_fetch + seq_tup_read FROM pg_stat_user_tables"
                   " WHERE schemaname = current_schema() AND relname = 'receipts'")
            .toLongLong();
    }

    QString place;
};

TEST_F(StoreOnPostgreSQL, WaitsForTheDisk)
{
    PostgresServer::instance().run(u"ALTER ROLE till SET synchronous_commit = off"_s);
    Store store(place, u"shop_1"_s);
    EXPECT_EQ(store.database().value("SHOW synchronous_commit").toString(), u"on"_s);
    PostgresServer::instance().run(u"ALTER ROLE till RESET synchronous_commit"_s);
}

TEST_F(StoreOnPostgreSQL, OfANewerVersionOrAnotherProgramIsLeftAlone)
{
    Store store(place, u"shop_1"_s);
    store.database().change("UPDATE databaseFormat SET version = 2");
    EXPECT_EQ(complaint(), u"it was written by a newer version of this program (format 2, known here: 1)."_s);
    store.database().change("UPDATE databaseFormat SET applicationId = 7");
    EXPECT_EQ(complaint(), u"the file is a database of another program."_s);
}

TEST_F(StoreOnPostgreSQL, GivesReceiptsThatOthersHaveLockedToNobody)
{
    Store store(place, u"shop_1"_s);
    addOne(store, newEntry(u"r1"_s));
    addOne(store, newEntry(u"r2"_s));
    Store other(place, u"shop_1"_s);
    WorkerLocks locks(other);
    Claims claims(other, locks, enrol(other, locks, u"till"_s), 1h);
    store.database().transaction([&] {
        EXPECT_TRUE(store.findToChange(u"r1"_s));
        EXPECT_EQ(claims.next().value().entry.id, u"r2"_s);
        EXPECT_FALSE(claims.next());
    });
    EXPECT_EQ(claims.next().value().entry.id, u"r1"_s);
}

TEST_F(StoreOnPostgreSQL, IsMadeOnceByAllWhoOpenItAtOnce)
{
    std::array<std::future<qint64>, 4> numbers;
    for (std::future<qint64>& number : numbers)
        number = std::async(std::launch::async, [&] { return Store(place, u"shop_1"_s).registerNumber(); });
    const qint64 first = numbers.front().get();
    for (std::size_t i = 1; i < numbers.size(); ++i)
        EXPECT_EQ(numbers[i].get(), first);
}

TEST_F(StoreOnPostgreSQL, WaitsForWhoMakesItButNotOnceItIsThere)
{
    Store other(PostgresServer::instance().newPlace(), u"shop_1"_s);
    const QString schema = place.section(u'=', 1);
    other.database().transaction([&] {
        other.database().change(
            "SELECT pg_advisory_xact_lock(hashtext('databaseFormat'), hashtext(?))", {schema});
        const auto waited = errorOf([&] { const Store store(place, u"shop_1"_s, 500ms); });
        EXPECT_TRUE(waited && waited->isPassing());
    });
    const Store made(place, u"shop_1"_s);
    other.database().transaction([&] {
        other.database().change(
            "SELECT pg_advisory_xact_lock(hashtext('databaseFormat'), hashtext(?))", {schema});
        EXPECT_FALSE(errorOf([&] { const Store store(place, u"shop_1"_s, 500ms); }));
    });
}

// Two who hand over the same receipt at once.
TEST_F(StoreOnPostgreSQL, TakesAReceiptOnceFromTwoAtOnce)
{
    Store store(place, u"shop_1"_s);
    std::future<Added> other;
    store.database().transaction([&] {
        store.database().change(
            "INSERT INTO receipts (register, id, file, line, text, digest, added, changed)"
            " VALUES (?, 'r1', 'a.json', 3, ?, 'digest', @now, @now)",
            {store.registerNumber(), newEntry(u"r1"_s).text});
        other = std::async(std::launch::async, [&] {
            Store second(place, u"shop_1"_s);
            return addOne(second, newEntry(u"r1"_s));
        });
        EXPECT_EQ(other.wait_for(100ms), std::future_status::timeout);
    });
    EXPECT_EQ(other.get(), Added::Known);
}

// Such as of a machine that was cut off: it would keep its locks.
TEST_F(StoreOnPostgreSQL, EndsATransactionThatRestsUnlessItLocksNothingOfOthers)
{
    Store store(place, u"shop_1"_s);
    EXPECT_EQ(store.database().value("SHOW idle_in_transaction_session_timeout").toString(), u"10s"_s);
    store.database().change("SET idle_in_transaction_session_timeout = 200");
    const auto rest = [] { std::this_thread::sleep_for(400ms); };
    store.database().snapshot(rest);
    addOne(store, newEntry(u"r1"_s));
    const auto ended = errorOf([&] {
        store.database().transaction([&] {
            EXPECT_TRUE(store.findToChange(u"r1"_s));
            rest();
        });
    });
    EXPECT_TRUE(ended && ended->isPassing());
}

// Which no text on a server can hold.
TEST_F(StoreOnPostgreSQL, ReplacesTheNullCharacter)
{
    Store store(place, u"shop_1"_s);
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    claims.setTrouble(u"a\u0000b"_s);
    EXPECT_EQ(overviewOf(store).trouble, u"a\uFFFDb"_s);
}

// Finished receipts are the oldest ones and become ever more.
TEST_F(StoreOnPostgreSQL, DoesNotWalkPastFinishedReceiptsForAClaim)
{
    Store store(place, u"shop_1"_s);
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    queueMany(store, 1, 4000);
    store.database().change("UPDATE receipts SET state = 'refused' WHERE line < 2000");
    store.database().change("ANALYZE receipts");
    const qint64 before = rowsRead(store);
    EXPECT_EQ(claims.next().value().entry.id, u"2000"_s);
    EXPECT_LT(rowsRead(store) - before, 20);
}

// What is planned for an empty table goes on to be used when it is large, until the server counts its rows.
TEST_F(StoreOnPostgreSQL, DoesNotReadAllReceiptsForAClaimThatWasPlannedWhenThereWereNone)
{
    Store store(place, u"shop_1"_s);
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    store.database().change("VACUUM ANALYZE receipts");
    EXPECT_FALSE(claims.next());
    queueMany(store, 1, 4000);
    const qint64 before = rowsRead(store);
    EXPECT_EQ(claims.next().value().entry.id, u"1"_s);
    EXPECT_LT(rowsRead(store) - before, 20);
}

TEST_F(StoreOnPostgreSQL, ClaimsInOneMessage)
{
    Store store(place, u"shop_1"_s);
    addOne(store, newEntry(u"r1"_s));
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    int statements = 0;
    store.database().setProbe([&] { ++statements; });
    EXPECT_TRUE(claims.next());
    EXPECT_EQ(statements, 1);
}

// What has begun to look for a receipt waits for others who change it, and claims it as they leave it.
TEST_F(StoreOnPostgreSQL, ClaimsAReceiptAsItIsWhenItIsLocked)
{
    Store store(place, u"shop_1"_s);
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    EXPECT_FALSE(claims.next());
    addOne(store, newEntry(u"r1"_s));
    Store other(place, u"shop_1"_s);
    std::future<std::optional<Claim>> claim;
    other.database().transaction([&] {
        other.database().change("LOCK TABLE receipts");
        claim = std::async(std::launch::async, [&] { return claims.next(); });
        EXPECT_TRUE(comesTrue([&] {
            return other.database()
                .value("SELECT EXISTS (SELECT 1 FROM pg_locks WHERE relation = 'receipts'::regclass"
                       " AND NOT granted)")
                .toBool();
        }));
        other.database().change("UPDATE receipts SET state = 'unknown', attempt = 7, maybeSent = 1");
    });
    const Claim claimed = claim.get().value();
    EXPECT_EQ(claimed.entry.attempt, 7);
    EXPECT_EQ(claimed.entry.state, State::Unknown);
    EXPECT_TRUE(claimed.entry.maybeSent);
    EXPECT_EQ(claimed.attempt, 8);
    EXPECT_TRUE(claims.conclude(claimed, endingAs(State::Registered)));
}

TEST_F(StoreOnPostgreSQL, LetsAPersonDecideOnlyWhenAClaimIsWritten)
{
    Store store(place, u"shop_1"_s);
    addOne(store, newEntry(u"r1"_s));
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    std::future<QString> decision;
    store.database().transaction([&] {
        EXPECT_TRUE(claims.next());
        decision = std::async(std::launch::async, [&] {
            Store other(place, u"shop_1"_s);
            return messageOf<till::Error>([&] { hold(other, u"r1"_s); });
        });
        EXPECT_EQ(decision.wait_for(100ms), std::future_status::timeout);
    });
    EXPECT_EQ(decision.get(), u"r1: a worker is sending it; try again when it has finished"_s);
}

// A reader that has seen a result is never shown an earlier one that was committed later.
TEST_F(StoreOnPostgreSQL, ShowsNoResultWhileAnEarlierOneIsBeingWritten)
{
    Store store(place, u"shop_1"_s);
    addOne(store, newEntry(u"r1"_s));
    WorkerLocks locks(store);
    Claims claims(store, locks, enrol(store, locks, u"till"_s), 1h);
    const Claim claim = claims.next().value();
    Store reader(place, u"shop_1"_s);
    reader.database().change("SET lock_timeout = 50");
    const auto read = [&] {
        int results = 0;
        forEachResult(reader, 0, [&](qint64, const QByteArray&) { return ++results > 0; });
        return results;
    };
    EXPECT_EQ(read(), 0);
    int statements = 0;
    store.database().setProbe([&] {
        // Between the result and its commit.
        if (++statements == 6) {
            EXPECT_TRUE(errorOf([&] { read(); }).value().isPassing());
        }
    });
    EXPECT_TRUE(claims.conclude(claim, endingAs(State::Registered)));
    EXPECT_EQ(statements, 6);
    EXPECT_EQ(read(), 1);
}

TEST_F(StoreOnPostgreSQL, IsAwayWhileItsServerIsDeadAndHasEverythingAfterwards)
{
    PostgresServer& server = PostgresServer::instance();
    std::optional<Store> store(std::in_place, place, u"shop_1"_s);
    for (int i = 0; i < 20; ++i)
        addOne(*store, newEntry(QString::number(i)));
    server.kill();
    // A session serves for a moment longer, until it notices.
    ASSERT_TRUE(comesTrue([&] { return errorOf([&] { store->requirePlace(); }).has_value(); }));
    const auto lost = errorOf([&] { addOne(*store, newEntry(u"late"_s)); });
    EXPECT_TRUE(lost && lost->isPassing());
    const auto away = errorOf([&] { const Store other(place, u"shop_1"_s); });
    EXPECT_TRUE(away && away->isPassing());
    server.start();
    store.emplace(place, u"shop_1"_s);
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(store->find(QString::number(i))) << i;
    EXPECT_FALSE(store->find(u"late"_s));
}

} // namespace
