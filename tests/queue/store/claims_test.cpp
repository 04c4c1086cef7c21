#include "tests/queue/store/storetest.h"

#include "queue/store/storeerror.h"
#include "tests/support/process.h"
#include "tests/support/textfile.h"

#include <gmock/gmock.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using namespace std::chrono_literals;

// Two workers as two processes have them.
class ClaimsTest : public StoreTest
{
protected:
    struct Worker
    {
        explicit Worker(const QString& place, std::chrono::milliseconds lease = 1h)
            : store(place, u"shop_1"_s)
            , locks(store)
            , claims(store, locks, enrol(store, locks, u"till"_s), lease)
        {
        }

        Store store;
        WorkerLocks locks;
        Claims claims;
    };

    void SetUp() override
    {
        addOne(store, newEntry(u"r1"_s));
        addOne(store, newEntry(u"r2"_s));
    }

    Worker first{place()};
    std::optional<Worker> second{std::in_place, place()};
};

STORE_TEST_SUITE(ClaimsTest);

TEST_P(ClaimsTest, GoByArrival)
{
    EXPECT_EQ(first.claims.next().value().entry.id, u"r1"_s);
    EXPECT_EQ(second->claims.next().value().entry.id, u"r2"_s);
    EXPECT_FALSE(first.claims.next());
    EXPECT_EQ(stateOf(u"r1"_s), State::Sent);
}

TEST_P(ClaimsTest, EndWithTheEvidenceAndTheResult)
{
    const Claim claim = first.claims.next().value();
    EXPECT_TRUE(first.claims.conclude(claim, endingAs(State::Registered)));
    EXPECT_EQ(stateOf(u"r1"_s), State::Registered);
    EXPECT_EQ(history(u"r1"_s), (QStringList{u"added"_s, u"claimed"_s, u"finished"_s}));
    EXPECT_EQ(resultOf(store, store.find(u"r1"_s).value()), "{\"outcome\":\"any\"}");
}

TEST_P(ClaimsTest, CannotEndAsRegisteredWithoutEvidence)
{
    const Claim claim = first.claims.next().value();
    Ending ending = endingAs(State::Registered);
    ending.evidence.reset();
    EXPECT_THROW(first.claims.conclude(claim, ending), StoreError);
    EXPECT_EQ(stateOf(u"r1"_s), State::Sent);
    EXPECT_EQ(history(u"r1"_s), (QStringList{u"added"_s, u"claimed"_s}));
}

TEST_P(ClaimsTest, OfADeadWorkerAreTakenOverAtOnce)
{
    EXPECT_TRUE(second->claims.next());
    EXPECT_EQ(first.claims.takeOver(), 0) << "it is alive";
    second.reset();
    // A server notices the end of a session a little later.
    EXPECT_TRUE(comesTrue([this] { return first.claims.takeOver() == 1; }));
    const Claim again = first.claims.next().value();
    EXPECT_EQ(again.entry.id, u"r1"_s);
    EXPECT_EQ(again.attempt, 2);
    EXPECT_TRUE(again.entry.maybeSent);
}

TEST_P(ClaimsTest, OfAWorkerThatWakesUpLateChangeNothing)
{
    const Claim late = second->claims.next().value();
    Worker other(place(), -1ms);
    EXPECT_EQ(other.claims.takeOver(), 1) << "its lease has ended";
    const Claim taken = other.claims.next().value();
    EXPECT_EQ(taken.entry.id, u"r1"_s);
    EXPECT_FALSE(second->claims.holds(late));
    EXPECT_FALSE(second->claims.noteContent(late, "other"));
    EXPECT_FALSE(second->claims.conclude(late, endingAs(State::Refused)));
    EXPECT_EQ(stateOf(u"r1"_s), State::Sent);
    EXPECT_TRUE(other.claims.conclude(taken, endingAs(State::Registered)));
    EXPECT_FALSE(second->claims.conclude(late, endingAs(State::Refused)));
    EXPECT_EQ(stateOf(u"r1"_s), State::Registered);
    EXPECT_EQ(overviewOf(store).events[u"stale"_s], 2);
    EXPECT_EQ(overviewOf(store).events[u"finished"_s], 1);
}

// Else a refusal would take back that it is registered.
TEST_P(ClaimsTest, ThatAreTakenOverKeepWhatTheServiceHasSaid)
{
    EXPECT_TRUE(first.claims.conclude(first.claims.next().value(), endingAs(State::Incomplete)));
    EXPECT_EQ(second->claims.next().value().entry.id, u"r1"_s);
    Worker other(place(), -1ms);
    EXPECT_EQ(other.claims.takeOver(), 1);
    EXPECT_EQ(stateOf(u"r1"_s), State::Incomplete);
}

// A session with the server may end, and with it the lock, while the worker goes on.
TEST_P(ClaimsTest, AreTakenFromAWorkerThatWasCalledDeadAndWorksOn)
{
    EXPECT_TRUE(second->claims.next());
    store.database().change("UPDATE workers SET ended = 1");
    Worker other(place(), -1ms);
    EXPECT_EQ(other.claims.takeOver(), 1);
}

TEST_P(ClaimsTest, NoteWhichContentIsSent)
{
    const Claim claim = first.claims.next().value();
    EXPECT_TRUE(first.claims.holds(claim));
    EXPECT_TRUE(first.claims.noteContent(claim, "second"));
    EXPECT_EQ(store.find(u"r1"_s).value().digest, "second");
    EXPECT_TRUE(first.claims.conclude(claim, endingAs(State::Unknown)));
    EXPECT_TRUE(first.claims.noteContent(first.claims.next().value(), "third"));
    EXPECT_EQ(store.find(u"r1"_s).value().digest, "") << "the service may have either";
    EXPECT_EQ(history(u"r1"_s), (QStringList{u"added"_s, u"claimed"_s, u"recomposed"_s, u"returned"_s,
                                    u"claimed"_s, u"recomposed"_s}));
}

TEST_P(ClaimsTest, EndTheTroubleOfTheRegisterWhenAReceiptIsRegistered)
{
    first.claims.setTrouble(u"the password is wrong"_s);
    EXPECT_TRUE(second->claims.conclude(second->claims.next().value(), endingAs(State::Unknown)));
    EXPECT_EQ(overviewOf(store).trouble, u"the password is wrong"_s);
    EXPECT_TRUE(second->claims.conclude(second->claims.next().value(), endingAs(State::Registered)));
    EXPECT_EQ(overviewOf(store).trouble, QString());
}

// Those tell the years since 1970. A server has a clock of its own.
TEST_P(ClaimsTest, KnowOfLifeInAFileByNoClockThatPeopleSet)
{
    first.claims.beat();
    const qint64 seen = store.database().value("SELECT max(seen) FROM workers").toLongLong();
    constexpr std::chrono::milliseconds tenYears = 87600h;
    EXPECT_EQ(seen > tenYears.count(), GetParam() == PlaceKind::Postgres);
    EXPECT_EQ(second->claims.takeOver(), 0);
}

TEST_P(ClaimsTest, WaitForTheirTimeAndLetOthersPass)
{
    Ending ending = endingAs(State::Unknown);
    ending.delay = 50s;
    EXPECT_TRUE(first.claims.conclude(first.claims.next().value(), ending));
    EXPECT_EQ(first.claims.next().value().entry.id, u"r2"_s);
    EXPECT_FALSE(first.claims.next());
    EXPECT_FALSE(first.claims.isDone());
}

// As after a clock that was set back by an hour.
TEST_P(ClaimsTest, DoNotWaitForAClockThatWasSetBack)
{
    Ending ending = endingAs(State::Unknown);
    ending.delay = 1h;
    EXPECT_TRUE(first.claims.conclude(first.claims.next().value(), ending));
    EXPECT_EQ(first.claims.next().value().entry.id, u"r1"_s);
}

TEST_P(ClaimsTest, LeaveHeldReceiptsAlone)
{
    hold(store, u"r1"_s);
    EXPECT_EQ(first.claims.next().value().entry.id, u"r2"_s);
    EXPECT_FALSE(first.claims.next());
    release(store, u"r1"_s);
    EXPECT_EQ(first.claims.next().value().entry.id, u"r1"_s);
}

class Decisions : public ClaimsTest
{
protected:
    void finish(State state)
    {
        EXPECT_TRUE(first.claims.conclude(first.claims.next().value(), endingAs(state)));
    }
};

STORE_TEST_SUITE(Decisions);

TEST_P(Decisions, CancelOnlyWhatWasNeverSent)
{
    const Claim claim = first.claims.next().value();
    EXPECT_THROW(cancel(store, u"r1"_s), till::Error);
    EXPECT_TRUE(first.claims.conclude(claim, endingAs(State::Unknown)));
    EXPECT_THROW(cancel(store, u"r1"_s), till::Error);
    EXPECT_EQ(stateOf(u"r1"_s), State::Unknown);
    cancel(store, u"r2"_s);
    EXPECT_EQ(stateOf(u"r2"_s), State::Cancelled);
    EXPECT_THROW(cancel(store, u"r2"_s), till::Error);
}

// As where the service refuses the account: nothing is registered, and the buyer's data has been sent.
TEST_P(Decisions, CancelNothingThatHasReachedTheService)
{
    const auto putBack = [&](const char* result) {
        Ending ending = endingAs(State::Queued);
        ending.maybeSent = false;
        ending.result = result;
        EXPECT_TRUE(first.claims.conclude(first.claims.next().value(), ending));
    };
    putBack(R"({"outcome":"refused","sent":true})");
    hold(store, u"r1"_s);
    EXPECT_THAT(messageOf<till::Error>([&] { cancel(store, u"r1"_s); }).toStdString(),
        testing::HasSubstr("it has reached the service and cannot be cancelled any more"));
    EXPECT_EQ(stateOf(u"r1"_s), State::Queued);
    putBack(R"({"outcome":"unknown","sent":false})");
    cancel(store, u"r2"_s);
    EXPECT_EQ(stateOf(u"r2"_s), State::Cancelled);
}

TEST_P(Decisions, SendAFailedReceiptAgainOnlyUnderANewId)
{
    finish(State::Failed);
    EXPECT_THROW(retry(store, u"r1"_s), till::Error);
    EXPECT_THROW(replace(store, u"r1"_s, newEntry(u"r2"_s)), till::Error) << "the id is taken";
    replace(store, u"r1"_s, newEntry(u"r3"_s));
    EXPECT_EQ(stateOf(u"r3"_s), State::Queued);
    EXPECT_EQ(history(u"r3"_s), (QStringList{u"added"_s, u"replaces"_s}));
    EXPECT_THROW(replace(store, u"r1"_s, newEntry(u"r4"_s)), till::Error) << "it would be sold twice";
    EXPECT_FALSE(store.find(u"r4"_s));
}

TEST_P(Decisions, SendARefusedReceiptAgainUnderEitherIdButNotBoth)
{
    finish(State::Refused);
    retry(store, u"r1"_s);
    EXPECT_EQ(stateOf(u"r1"_s), State::Queued);
    EXPECT_THROW(replace(store, u"r1"_s, newEntry(u"r3"_s)), till::Error);
    finish(State::Refused);
    replace(store, u"r1"_s, newEntry(u"r3"_s));
    EXPECT_THROW(retry(store, u"r1"_s), till::Error);
}

TEST_P(Decisions, NeverTouchARegisteredReceipt)
{
    finish(State::Registered);
    for (const auto& decide : {&hold, &release, &cancel, &retry})
        EXPECT_THROW(decide(store, u"r1"_s), till::Error);
    EXPECT_THROW(replace(store, u"r1"_s, newEntry(u"r3"_s)), till::Error);
    EXPECT_EQ(history(u"r1"_s), (QStringList{u"added"_s, u"claimed"_s, u"finished"_s}));
}

TEST_P(Decisions, NameAReceiptThatIsNotThere)
{
    for (const auto& decide : {&hold, &release, &cancel, &retry})
        EXPECT_THROW(decide(store, u"r9"_s), till::Error);
}

} // namespace
