#pragma once

#include "queue/work/lane.h"

#include <exception>

namespace queue {

/// The lanes of a worker, as long as its store can be used.
class Crew
{
public:
    /// All are borrowed.
    Crew(const Surroundings& usedSurroundings, int usedLanes, const PauseLengths& pauses);

    /// Blocks until stop() or, where that is asked for, nothing is left to do. Calls `begun` once the worker
    /// is entered into the store. Returns whether it ended as it should, and not because the register did not
    /// come back. Throws till::Error when it cannot work.
    [[nodiscard]] bool run(const QString& name, const std::function<void()>& begun);
    /// Ends the work after the receipts that are being sent. May be called from another thread.
    void stop() { pause.stop(); }

private:
    void runLane(const WorkerLocks& locks, qint64 worker);
    void keepAlive(Store& store, Claims& claims);
    void keep(std::exception_ptr thrown);

    const Surroundings& surroundings;
    const int lanes;
    Pause pause;
    Pace pace;
    std::mutex creation;

    // Of the lanes.
    std::mutex guard;
    int running = 0;
    bool hasGivenUp = false;
    std::exception_ptr failure;
};

} // namespace queue
