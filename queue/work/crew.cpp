#include "queue/work/worker.h"

#include <thread>
#include <vector>

namespace queue {

Worker::Worker(Surroundings usedSurroundings, int usedLanes, QString usedName, Pause::Milliseconds firstPause,
    Pause::Milliseconds longestPause)
    : surroundings(std::move(usedSurroundings))
    , lanes(usedLanes)
    , name(std::move(usedName))
    , pause(firstPause, longestPause)
{
}

bool Worker::run()
{
    Store store(surroundings.storeFile, surroundings.address);
    WorkerLocks locks(surroundings.storeFile);
    const qint64 worker = enrol(store, locks, name);
    Claims claims(store, locks, worker, surroundings.lease);
    running = lanes;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < lanes; ++i)
            threads.emplace_back([&] { runLane(locks, worker); });
        keepAlive(claims);
    }
    if (failure)
        std::rethrow_exception(failure);
    claims.leave();
    return !hasGivenUp;
}

// The first lane that cannot go on ends the others: what is wrong with its setup is wrong with theirs.
void Worker::runLane(const WorkerLocks& locks, qint64 worker)
{
    bool isGood = true;
    std::exception_ptr thrown;
    try {
        isGood = Lane(surroundings, locks, worker, pause, creation).run();
    } catch (...) {
        thrown = std::current_exception();
    }
    const std::scoped_lock lock(guard);
    --running;
    if (thrown && !failure)
        failure = thrown;
    hasGivenUp = hasGivenUp || !isGood;
    if (thrown || !isGood)
        pause.stop();
}

// Ends when the last lane has ended.
void Worker::keepAlive(Claims& claims)
{
    const auto isRunning = [&] {
        const std::scoped_lock lock(guard);
        return running > 0;
    };
    auto last = std::chrono::steady_clock::now();
    try {
        while (isRunning()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            surroundings.showLife();
            if (const auto now = std::chrono::steady_clock::now(); now - last > surroundings.lease / 3) {
                claims.beat();
                last = now;
            }
        }
    } catch (...) {
        const std::scoped_lock lock(guard);
        failure = std::current_exception();
        pause.stop();
    }
}

} // namespace queue
