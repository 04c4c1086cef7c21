#include "tests/queue/properties/world.h"

#include "queue/store/storeerror.h"
#include "tests/queue/store/storetest.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Steps that are cut off, or die after their last statement: enough of them, and receipts that live on.
constexpr int oneInDies = 8;
constexpr int mostStatements = 8;
constexpr int statementsOfEnrolling = 4;

std::size_t whoIn(const Step& step)
{
    // The register of two has more to do.
    constexpr std::array turns{0U, 1U, 0U, 1U, 2U};
    return turns[step[1] % turns.size()];
}

bool dies(const Step& step)
{
    return step[4] % oneInDies == 0;
}

const Deed& deedIn(const Step& step)
{
    return deeds()[step[0] % deeds().size()];
}

// A server notices the end of a session a little later.
void waitUntilFree(queue::Store& store, const queue::WorkerLocks& locks, qint64 worker)
{
    const auto end = std::chrono::steady_clock::now() + 1min;
    while (locks.isTaken(store, worker)) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("the lock of a dead worker is still taken");
        std::this_thread::sleep_for(200us);
    }
}

[[noreturn]] void fail(const Deed& deed, const QString& what, const Model& expected, const Model& found)
{
    throw std::runtime_error(
        u"%1: %2\nexpected:\n%3\nfound:\n%4"_s
            .arg(QString::fromLatin1(deed.name), what, expected.described(), found.described())
            .toStdString());
}

} // namespace

World::World(const QString& usedPlace)
    : place(usedPlace)
    , observer(place, u"shop_1"_s)
    , locks(observer)
    , numbers{observer.registerNumber(), queue::Store(place, u"shop_2"_s).registerNumber()}
{
}

void World::live(const std::vector<Step>& steps)
{
    clear();
    isWhole = false;
    for (const Step& step : steps)
        take(step);
    isWhole = true;
    ++tally[u"lives"_s];
}

// A life that ended as it should leaves its workers to the next one.
void World::clear()
{
    for (std::size_t who = 0; who < workers; ++who) {
        if (isWhole)
            actors[who]->underWay.clear();
        else
            kill(who);
    }
    for (const char* statement :
        {"DELETE FROM receipts", "DELETE FROM events", "UPDATE registers SET trouble = ''"})
        observer.database().change(statement);
    if (!isWhole)
        observer.database().change("DELETE FROM workers");
    for (const qint64 worker : content().workers) {
        const auto isAlive = [&](const auto& actor) { return actor->number == worker; };
        if (std::ranges::none_of(actors, isAlive))
            observer.database().change("DELETE FROM workers WHERE number = ?", {worker});
    }
    model = content();
    for (std::size_t who = 0; who < workers && !isWhole; ++who)
        revive(who, {});
    // So that there is something to do from the first step on.
    for (const std::size_t who : {0U, 2U}) {
        for (const QString& id : {u"0"_s, u"1"_s, u"2"_s})
            addOne(actors[who]->store, newEntry(id));
    }
    model = content();
    cursors = {};
    read = {};
    serial = 0;
}

Turn World::turnOf(const Step& step)
{
    const std::size_t who = whoIn(step);
    const std::size_t where = who == 2 ? 1 : 0;
    Turn turn{*actors[who], where, step, ++serial, {}, cursors[where], read[where]};
    for (const auto& actor : actors)
        turn.living.insert(actor->number);
    return turn;
}

// Where the process dies, the store is as before or as after one of the step's transactions.
void World::take(const Step& step)
{
    const std::size_t who = whoIn(step);
    const Deed& deed = deedIn(step);
    Turn turn = turnOf(step);
    std::vector<Model> between{model};
    Model next = model;
    const QString expected = deed.inModel(next, turn, between);
    between.push_back(next);

    Fuse& fuse = fuses[who];
    fuse.statements = dies(step) ? 1 + step[4] / oneInDies % mostStatements : 0;
    const bool isSevered = sessions[who] != 0 && step[5] % 2 == 0;
    fuse.blow = [&] {
        if (!isSevered)
            throw Died();
        observer.database().change("SELECT pg_terminate_backend(?)", {sessions[who]});
    };
    const QString answer = attempt(deed, turn);
    const bool isCutOff = dies(step) && fuse.statements == 0;
    fuse.statements = 0;

    const Model now = content();
    if (isCutOff && std::ranges::find(between, now) == between.end())
        fail(deed, u"cut off, the store is neither as before nor as after"_s, next, now);
    if (isCutOff && answer == refusal && expected != refusal)
        fail(deed, u"cut off, it does not count as passing"_s, next, now);
    if (!isCutOff && answer != expected)
        fail(deed, u"answered \"%1\" and not \"%2\""_s.arg(answer, expected), next, now);
    if (!isCutOff && now != next)
        fail(deed, u"another content"_s, next, now);
    model = now;
    if (!dies(step)) {
        cursors[turn.where] = turn.cursor;
        read[turn.where] = turn.read;
    }
    ++tally[isCutOff ? isSevered ? u"severed"_s : u"died"_s : answer];
    if (dies(step) || answer == "left"_L1)
        revive(who, step);
}

// What a fuse does to the session of a server is a passing trouble of the store to the worker.
QString World::attempt(const Deed& deed, Turn& turn)
{
    try {
        return deed.inStore(turn);
    } catch (const Died&) {
        return u"died"_s;
    } catch (const queue::StoreError& error) {
        return error.isPassing() ? u"away"_s : refusal;
    } catch (const till::Error&) {
        return refusal;
    }
}

void World::kill(std::size_t who)
{
    if (!actors[who])
        return;
    const qint64 dead = actors[who]->number;
    actors[who].reset();
    waitUntilFree(observer, locks, dead);
}

// One in three dies a first time while it is entered into the store, or right after that.
void World::revive(std::size_t who, const Step& step)
{
    kill(who);
    if (step[5] % 3 == 1) {
        fuses[who] = {1 + step[5] / 3 % statementsOfEnrolling, [] { throw Died(); }};
        try {
            enter(who);
            kill(who);
        } catch (const Died&) {
            ++tally[u"died while enrolling"_s];
        }
        fuses[who].statements = 0;
    }
    enter(who);
    if (till::isOnServer(place))
        sessions[who] = actors[who]->store.database().value("SELECT pg_backend_pid()").toLongLong();
    if (const Model now = content(); now != model)
        fail(deedIn(step), u"a worker was enrolled, and changed the content"_s, model, now);
}

void World::enter(std::size_t who)
{
    actors[who] = std::make_unique<Actor>(place, QString::fromLatin1(addresses[who]), fuses[who]);
    const qint64 number = actors[who]->number;
    if (number <= highest)
        throw std::runtime_error("the number of a worker was used again");
    highest = number;
    model.workers.insert(number);
}
