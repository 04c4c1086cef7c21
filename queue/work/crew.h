#pragma once

#include "queue/work/lane.h"

#include <exception>

namespace queue {

/// Registers what is queued, with several registers at once.
class Worker
{
public:
    /// `usedName` tells it from others, for people.
    Worker(Surroundings usedSurroundings, int usedLanes, QString usedName,
        Pause::Milliseconds firstPause = std::chrono::seconds(1),
        Pause::Milliseconds longestPause = std::chrono::minutes(1));

    /// Blocks until stop() or, where that is asked for, nothing is left to do. Returns whether it ended as it
    /// should, and not because the register did not come back. Throws till::Error when it cannot work.
    [[nodiscard]] bool run();
    /// Ends the work after the receipts that are being sent. May be called from another thread.
    void stop() { pause.stop(); }

private:
    void runLane(const WorkerLocks& locks, qint64 worker);
    void keepAlive(Claims& claims);

    const Surroundings surroundings;
    const int lanes;
    const QString name;
    Pause pause;
    std::mutex creation;

    // Of the lanes.
    std::mutex guard;
    int running = 0;
    bool hasGivenUp = false;
    std::exception_ptr failure;
};

} // namespace queue
