#include "queue/work/crew.h"

#include <thread>
#include <vector>

namespace queue {

namespace {

constexpr std::chrono::milliseconds tick{50};
constexpr std::chrono::seconds betweenLooks{1};

} // namespace

Crew::Crew(const Surroundings& usedSurroundings, int usedLanes, const PauseLengths& pauses)
    : surroundings(usedSurroundings)
    , lanes(usedLanes)
    , pause(pauses.first, pauses.longest)
{
}

bool Crew::run(const QString& name, const std::function<void()>& begun)
{
    Store store(surroundings.store, surroundings.address, surroundings.patience);
    WorkerLocks locks(store);
    const qint64 worker = enrol(store, locks, name);
    Claims claims(store, locks, worker, surroundings.lease);
    begun();
    running = lanes;
    {
        std::vector<std::jthread> threads;
        try {
            for (int i = 0; i < lanes; ++i)
                threads.emplace_back([&] { runLane(locks, worker); });
            keepAlive(store, claims);
        } catch (...) {
            keep(std::current_exception());
        }
    }
    if (failure)
        std::rethrow_exception(failure);
    claims.leave();
    return !hasGivenUp;
}

// The first lane that cannot go on ends the others: what is wrong with its setup is wrong with theirs.
void Crew::runLane(const WorkerLocks& locks, qint64 worker)
{
    bool isGood = true;
    try {
        isGood = Lane(surroundings, locks, worker, pause, pace, creation).run();
    } catch (...) {
        keep(std::current_exception());
    }
    const std::scoped_lock lock(guard);
    --running;
    hasGivenUp = hasGivenUp || !isGood;
    if (!isGood)
        pause.stop();
}

// Ends when the last lane has ended.
void Crew::keepAlive(Store& store, Claims& claims)
{
    const auto isRunning = [&] {
        const std::scoped_lock lock(guard);
        return running > 0;
    };
    const auto begin = std::chrono::steady_clock::now();
    auto beaten = begin;
    auto looked = begin;
    auto takenOver = begin - surroundings.idle;
    auto now = begin;
    const auto isTime = [&](auto& last, std::chrono::milliseconds length) {
        const bool is = now - last >= length;
        last = is ? now : last;
        return is;
    };
    const auto rest = [&] {
        surroundings.showLife();
        std::this_thread::sleep_for(tick);
    };
    try {
        for (; isRunning(); now = std::chrono::steady_clock::now()) {
            rest();
            if (isTime(looked, betweenLooks))
                store.requirePlace();
            if (isTime(beaten, surroundings.lease / 3))
                claims.beat();
            if (isTime(takenOver, surroundings.idle))
                claims.takeOver();
        }
    } catch (...) {
        keep(std::current_exception());
    }
    // A lane may go on waiting for the service.
    while (isRunning())
        rest();
}

void Crew::keep(std::exception_ptr thrown)
{
    const std::scoped_lock lock(guard);
    if (!failure)
        failure = std::move(thrown);
    pause.stop();
}

} // namespace queue
