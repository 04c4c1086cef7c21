#include "host/transport/idlehandles.h"

#include "host/transport/keptconnection.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <utility>

#include <pthread.h>

namespace hostruntime {

namespace {

using namespace std::chrono_literals;

// Between two looks, so that thousands of connections do not cause one each.
constexpr auto pause = 50ms;

// A thread starts with the signal mask of the one that starts it, and signals belong to the host program.
class AllSignalsBlocked
{
public:
    AllSignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    AllSignalsBlocked(const AllSignalsBlocked&) = delete;
    AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;

private:
    sigset_t before{};
};

} // namespace

// The handles of the process, and what becomes of them when it forks or exits.
class IdleHandlesOfProcess
{
public:
    static IdleHandlesOfProcess& instance()
    {
        static IdleHandlesOfProcess single;
        return single;
    }

    ~IdleHandlesOfProcess()
    {
        if (const auto handles = current.lock())
            handles->stop();
    }
    IdleHandlesOfProcess(const IdleHandlesOfProcess&) = delete;
    IdleHandlesOfProcess& operator=(const IdleHandlesOfProcess&) = delete;

    std::shared_ptr<IdleHandles> get()
    {
        const std::lock_guard lock(guard);
        auto handles = current.lock();
        if (!handles) {
            handles = std::make_shared<IdleHandles>(KeptConnection::longestIdle);
            current = handles;
        }
        return handles;
    }

private:
    IdleHandlesOfProcess()
    {
        pthread_atfork([] { instance().beforeFork(); }, [] { instance().afterFork(); },
            [] { instance().afterForkInChild(); });
    }

    // The child would wait for ever for what is locked now: a mutex of ours, or one of the libraries that a
    // handle is made of.
    void beforeFork()
    {
        guard.lock();
        forking = current.lock();
        if (forking) {
            forking->guard.lock();
            forking->destroying.lock();
        }
    }

    void afterFork()
    {
        const auto handles = std::move(forking);
        if (handles) {
            handles->destroying.unlock();
            handles->guard.unlock();
        }
        guard.unlock();
    }

    void afterForkInChild()
    {
        if (forking)
            forking->forgetThread();
        afterFork();
    }

    std::mutex guard;
    std::weak_ptr<IdleHandles> current;
    std::shared_ptr<IdleHandles> forking;
};

IdleHandles::IdleHandles(std::chrono::milliseconds longestIdle)
    : longest(longestIdle)
{
}

IdleHandles::~IdleHandles()
{
    stop();
}

std::shared_ptr<IdleHandles> IdleHandles::shared()
{
    return IdleHandlesOfProcess::instance().get();
}

void IdleHandles::keep(Place& place, std::unique_ptr<CurlHandle> handle) noexcept
{
    // Destroyed when the lock is released.
    std::unique_ptr<CurlHandle> surplus;
    const std::lock_guard lock(guard);
    if (kept.size() == most)
        surplus = remove(*kept.front());
    place.handle = std::move(handle);
    place.end = Clock::now() + longest;
    kept.splice(kept.end(), place.entry);
    if (!running && !ending)
        start();
}

std::unique_ptr<CurlHandle> IdleHandles::take(Place& place) noexcept
{
    const std::lock_guard lock(guard);
    return place.handle ? remove(place) : nullptr;
}

void IdleHandles::stop()
{
    {
        const std::lock_guard lock(guard);
        ending = true;
    }
    changed.notify_all();
    if (thread.joinable())
        thread.join();
}

std::unique_ptr<CurlHandle> IdleHandles::remove(Place& place) noexcept
{
    place.entry.splice(place.entry.end(), kept, place.position);
    return std::move(place.handle);
}

void IdleHandles::start() noexcept
{
    const AllSignalsBlocked blocked;
    // One that is at its end no longer needs the lock.
    if (thread.joinable())
        thread.join();
    try {
        thread = std::thread([this] { run(); });
        running = true;
    } catch (const std::exception&) {
        // The exchange has succeeded all the same; the next one tries again.
    }
}

void IdleHandles::run()
{
    std::unique_lock lock(guard);
    while (!ending && !kept.empty()) {
        const Clock::time_point now = Clock::now();
        Place& oldest = *kept.front();
        if (oldest.end > now) {
            // Meanwhile, the place may cease to exist.
            const Clock::time_point next = std::max(oldest.end, now + pause);
            changed.wait_until(lock, next, [this] { return ending; });
            continue;
        }
        std::unique_ptr<CurlHandle> handle = remove(oldest);
        lock.unlock();
        {
            const std::lock_guard destruction(destroying);
            handle.reset();
        }
        lock.lock();
    }
    running = false;
}

// A forked process has the objects, but not the thread: it cannot be joined, and the condition would wait for
// it to wake up. So they are not destroyed, but made anew.
void IdleHandles::forgetThread()
{
    std::construct_at(&thread);
    std::construct_at(&changed);
    running = false;
}

} // namespace hostruntime
