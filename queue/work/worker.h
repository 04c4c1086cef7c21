#pragma once

#include "queue/work/crew.h"

namespace queue {

/// Registers what is queued, with several registers at once, and waits for a store that is away: locked for
/// long, removed, unmounted, on a full disk.
class Worker
{
public:
    /// `usedName` tells it from others, for people.
    Worker(Surroundings usedSurroundings, int usedLanes, QString usedName, PauseLengths usedPauses = {});

    /// Blocks until stop() or, where that is asked for, nothing is left to do or the store cannot be used.
    /// Returns whether it ended as it should, and not because the register did not come back. Throws
    /// till::Error when it cannot work.
    [[nodiscard]] bool run();
    /// Ends the work after the receipts that are being sent. May be called from another thread.
    void stop();

private:
    [[nodiscard]] bool work();
    void say(const QString& text);
    [[nodiscard]] bool rest();

    const Surroundings surroundings;
    const int lanes;
    const QString name;
    const PauseLengths pauses;
    // Whether the store has been there: then a new one is not made in its place.
    bool isKnown = false;
    QString trouble;

    std::mutex guard;
    std::condition_variable changed;
    Crew* crew = nullptr;
    bool stopped = false;
};

} // namespace queue
