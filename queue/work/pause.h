#pragma once

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <random>

namespace queue {

struct PauseLengths
{
    std::chrono::milliseconds first = std::chrono::seconds(1);
    std::chrono::milliseconds longest = std::chrono::minutes(1);
};

/// The pauses of a register whose account is at fault, or whose service does not answer, shared by the lanes
/// of a worker. Each is longer than the one before, up to a limit, with some jitter; after it one lane tries
/// whether the trouble is over, and the others go on waiting.
class Pause
{
public:
    using Milliseconds = std::chrono::milliseconds;

    /// `usedFirst` and `usedLongest` are the lengths of the first and the longest pause.
    explicit Pause(
        Milliseconds usedFirst = std::chrono::seconds(1), Milliseconds usedLongest = std::chrono::minutes(1));

    /// The register is in trouble: lanes stop before their next receipt.
    void begin();
    /// Whether this trouble is another one than that before, or the first one after forget().
    [[nodiscard]] bool isNews(const QString& trouble);
    /// A receipt went through: the next pause is a short one again. Returns whether there was any trouble.
    bool forget();
    /// Ends all waiting, for good.
    void stop();

    /// Waits until the register may be used; calls `isOver` after each pause, in one lane at a time. Returns
    /// false when the worker is to stop.
    [[nodiscard]] bool wait(const std::function<bool()>& isOver);
    /// The same without waiting, for a lane that has something else to do: calls `isOver` where it is time.
    void tryNow(const std::function<bool()>& isOver);
    /// Waits as long as nothing is stopped; returns false when it is.
    [[nodiscard]] bool rest(Milliseconds time);

    [[nodiscard]] bool isStopped() const;
    /// Whether a pause has begun and is not over.
    [[nodiscard]] bool isBegun() const;
    /// Whether a pause of the longest kind has been begun.
    [[nodiscard]] bool isLongest() const;

private:
    void lengthen();
    [[nodiscard]] bool isTime() const;
    void tryOnce(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isOver);

    const Milliseconds first;
    const Milliseconds longest;
    mutable std::mutex guard;
    std::condition_variable changed;
    std::minstd_rand random;
    QString known;
    Milliseconds length{0};
    std::chrono::steady_clock::time_point until;
    bool isPaused = false;
    bool isTrying = false;
    bool stopped = false;
};

} // namespace queue
