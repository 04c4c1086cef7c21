#include "tests/queue/store/storetest.h"
#include "tests/support/process.h"
#include "till/error.h"

#include <rapidcheck.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using namespace std::chrono_literals;

struct Died
{
};

// What the store must hold of a receipt.
struct Known
{
    State state = State::Queued;
    bool isHeld = false;
    int attempt = 0;
    bool maybeSent = false;
    qint64 owner = 0;
    int events = 1;

    bool operator==(const Known& other) const = default;
};

// By arrival; the store's order is that of its numbers.
using Model = std::vector<std::pair<QString, Known>>;

Known* findIn(Model& model, const QString& id)
{
    const auto found =
        std::find_if(model.begin(), model.end(), [&](const auto& one) { return one.first == id; });
    return found == model.end() ? nullptr : &found->second;
}

Model contentOf(Store& store)
{
    Model model;
    QSqlQuery row = store.database().query(
        "SELECT id, state, held, attempt, maybeSent, worker,"
        " (SELECT count(*) FROM events WHERE receipt = receipts.number) FROM receipts ORDER BY number");
    while (row.next())
        model.push_back({row.value(0).toString(),
            {queue::stateOf(row.value(1).toString()).value(), row.value(2).toBool(), row.value(3).toInt(),
                row.value(4).toBool(), row.value(5).toLongLong(), row.value(6).toInt()}});
    return model;
}

// A process: its connection, its lock, and what it believes to have under way. It dies before the statement
// that its fuse counts down to.
class Actor
{
public:
    explicit Actor(const QString& place)
        : store(place, u"shop_1"_s)
        , locks(store)
        , number(enrol(store, locks, u"till"_s))
        , patient(store, locks, number, 1h)
        , impatient(store, locks, number, -1ms)
    {
        store.database().setProbe([this] {
            if (fuse > 0 && --fuse == 0)
                throw Died();
        });
    }

    Store store;
    WorkerLocks locks;
    qint64 number;
    Claims patient;
    Claims impatient;
    std::vector<Claim> underWay;
    int fuse = 0;
};

using Step = std::array<std::uint8_t, 5>;

class World
{
public:
    explicit World(const QString& usedPlace)
        : place(usedPlace)
        , actors{std::make_unique<Actor>(place), std::make_unique<Actor>(place)}
    {
    }

    // Does a step in both worlds. Where the process dies, the store is as before or as after one of the
    // step's transactions.
    void take(const Step& step)
    {
        auto& actor = actors[step[1] % 2];
        const std::vector<Model> allowed = expected(*actor, step);
        // One step in four dies, or late wake-ups would be too rare.
        actor->fuse = step[4] % 4 == 0 ? step[4] / 4 % 16 : 0;
        bool hasDied = false;
        try {
            act(*actor, step);
        } catch (const Died&) {
            hasDied = true;
        } catch (const till::Error&) {
            RC_ASSERT(allowed.size() == 1U);
        }
        actor->fuse = 0;
        if (hasDied) {
            const qint64 dead = actor->number;
            actor.reset();
            actor = std::make_unique<Actor>(place);
            // A server notices the end of a session a little later.
            RC_ASSERT(comesTrue([&] { return !actor->locks.isTaken(actor->store, dead); }));
        }
        const Model now = contentOf(actor->store);
        const auto found = std::find(allowed.begin(), allowed.end(), now);
        RC_ASSERT(found != allowed.end() && (hasDied || *found == allowed.back()));
        model = now;
    }

private:
    static QString idOf(const Step& step) { return QString::number(step[2] % 12); }

    void act(Actor& actor, const Step& step)
    {
        const QString id = idOf(step);
        switch (step[0] % 10) {
        case 0:
        case 1:
            addOne(actor.store, newEntry(id));
            return;
        case 2:
        case 3:
            if (const auto claim = actor.patient.next())
                actor.underWay.push_back(*claim);
            return;
        case 4:
        case 5:
            if (!actor.underWay.empty()) {
                const Claim claim = actor.underWay.back();
                actor.underWay.pop_back();
                actor.patient.conclude(claim, endingAs(endings[step[3] % endings.size()]));
            }
            return;
        case 6:
            (step[3] % 2 == 0 ? actor.patient : actor.impatient).takeOver();
            return;
        case 7:
            (step[3] % 2 == 0 ? hold : release)(actor.store, id);
            return;
        case 8:
            cancel(actor.store, id);
            return;
        default:
            retry(actor.store, id);
        }
    }

    // The model before the step and after each of its transactions.
    std::vector<Model> expected(const Actor& actor, const Step& step)
    {
        std::vector<Model> models{model};
        Model next = model;
        if (change(next, actor, step, models))
            models.push_back(next);
        return models;
    }

    bool change(Model& next, const Actor& actor, const Step& step, std::vector<Model>& models)
    {
        Known* const known = findIn(next, idOf(step));
        switch (step[0] % 10) {
        case 0:
        case 1:
            if (!known)
                next.push_back({idOf(step), {}});
            return !known;
        case 2:
        case 3:
            return claim(next, actor.number);
        case 4:
        case 5:
            return conclude(next, actor, endings[step[3] % endings.size()]);
        case 6:
            return takeOver(next, actor, step[3] % 2 != 0, models);
        default:
            return known && decide(*known, step);
        }
    }

    static bool isWaiting(const Known& known)
    {
        return !known.isHeld && (known.state == State::Queued || known.state == State::Unknown ||
                                    known.state == State::Incomplete);
    }

    static bool claim(Model& next, qint64 worker)
    {
        const auto first =
            std::find_if(next.begin(), next.end(), [](const auto& one) { return isWaiting(one.second); });
        if (first == next.end())
            return false;
        Known& known = first->second;
        known = {State::Sent, false, known.attempt + 1, true, worker, known.events + 1};
        return true;
    }

    static bool conclude(Model& next, const Actor& actor, State state)
    {
        if (actor.underWay.empty())
            return false;
        const Claim& claim = actor.underWay.back();
        Known& known = *findIn(next, claim.entry.id);
        ++known.events;
        if (known.state != State::Sent || known.owner != actor.number || known.attempt != claim.attempt)
            return true;
        known.state = state;
        known.owner = 0;
        return true;
    }

    // Each other worker is a transaction of its own.
    bool takeOver(Model& next, const Actor& actor, bool isImpatient, std::vector<Model>& models) const
    {
        std::set<qint64> alive;
        for (const auto& one : actors)
            alive.insert(one->number);
        std::set<qint64> owners;
        for (const auto& [id, known] : next)
            owners.insert(known.owner);
        for (const qint64 owner : owners) {
            if (owner == 0 || owner == actor.number || (alive.contains(owner) && !isImpatient))
                continue;
            for (auto& [id, known] : next) {
                if (known.owner == owner)
                    known = {State::Unknown, false, known.attempt, true, 0, known.events + 1};
            }
            models.push_back(next);
        }
        return false;
    }

    static bool decide(Known& known, const Step& step)
    {
        const bool isFree = !isFinished(known.state) && known.state != State::Sent;
        const int kind = step[0] % 10;
        if (kind == 7) {
            const bool holds = step[3] % 2 == 0;
            if (!isFree || (!holds && !known.isHeld))
                return false;
            known.isHeld = holds;
        } else if (kind == 8) {
            if (known.state != State::Queued || known.maybeSent)
                return false;
            known.state = State::Cancelled;
            known.isHeld = false;
        } else {
            if (known.state != State::Refused && !isFree)
                return false;
            known.state = known.state == State::Refused ? State::Queued : known.state;
            known.isHeld = false;
        }
        ++known.events;
        return true;
    }

    static constexpr std::array endings{
        State::Registered, State::Refused, State::Failed, State::Unknown, State::Incomplete, State::Queued};

    QString place;
    Model model;
    std::array<std::unique_ptr<Actor>, 2> actors;
};

class StoreProperties : public testing::TestWithParam<PlaceKind>
{
};
STORE_TEST_SUITE(StoreProperties);

TEST_P(StoreProperties, AStepHappensAsAWholeOrNotAtAllWhereverItsProcessDies)
{
    EXPECT_TRUE(rc::check([this] {
        // Long enough for workers to lose receipts and wake up late.
        const auto steps =
            *rc::gen::resize(100, rc::gen::container<std::vector<Step>>(100, rc::gen::arbitrary<Step>()));
        const TestPlace where(GetParam());
        World world(where.place());
        for (const Step& step : steps)
            world.take(step);
    }));
}

} // namespace
