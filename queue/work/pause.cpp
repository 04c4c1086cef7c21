#include "queue/work/pause.h"

#include <algorithm>
#include <utility>

namespace queue {

Pause::Pause(Milliseconds usedFirst, Milliseconds usedLongest)
    : first(usedFirst)
    , longest(usedLongest)
    , random(std::random_device()())
{
}

void Pause::begin()
{
    const std::scoped_lock lock(guard);
    // Lanes that fail at the same moment share one pause.
    if (!isPaused)
        lengthen();
    isPaused = true;
}

bool Pause::isNews(const QString& trouble)
{
    const std::scoped_lock lock(guard);
    return std::exchange(known, trouble) != trouble;
}

bool Pause::forget()
{
    const std::scoped_lock lock(guard);
    length = Milliseconds(0);
    return !std::exchange(known, {}).isEmpty();
}

void Pause::stop()
{
    {
        const std::scoped_lock lock(guard);
        stopped = true;
    }
    changed.notify_all();
}

bool Pause::wait(const std::function<bool()>& isOver)
{
    std::unique_lock lock(guard);
    while (!stopped && isPaused) {
        if (isTrying) {
            changed.wait(lock);
        } else if (!isTime()) {
            changed.wait_until(lock, until);
        } else {
            tryOnce(lock, isOver);
        }
    }
    return !stopped;
}

void Pause::tryNow(const std::function<bool()>& isOver)
{
    std::unique_lock lock(guard);
    if (!stopped && isPaused && !isTrying && isTime())
        tryOnce(lock, isOver);
}

bool Pause::isTime() const
{
    return std::chrono::steady_clock::now() >= until;
}

void Pause::tryOnce(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isOver)
{
    isTrying = true;
    lock.unlock();
    const bool good = isOver();
    lock.lock();
    isTrying = false;
    isPaused = !good;
    if (!good)
        lengthen();
    changed.notify_all();
}

bool Pause::rest(Milliseconds time)
{
    std::unique_lock lock(guard);
    changed.wait_for(lock, time, [&] { return stopped; });
    return !stopped;
}

bool Pause::isStopped() const
{
    const std::scoped_lock lock(guard);
    return stopped;
}

bool Pause::isBegun() const
{
    const std::scoped_lock lock(guard);
    return isPaused;
}

bool Pause::isLongest() const
{
    const std::scoped_lock lock(guard);
    return length >= longest;
}

// Up to a fifth less, so that workers that were cut off together do not come back together.
void Pause::lengthen()
{
    length = std::clamp(length * 2, first, longest);
    std::uniform_int_distribution<Milliseconds::rep> jitter(0, length.count() / 5);
    until = std::chrono::steady_clock::now() + length - Milliseconds(jitter(random));
}

} // namespace queue
