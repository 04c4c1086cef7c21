#pragma once

#include "host/export.h"
#include "host/transport/curlhandle.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace hostruntime {

/// Has the handles of all connections between their exchanges, and destroys those that have been idle for too
/// long to be used again, so that a program with many registers holds no descriptors for those that do not
/// sell. When many are idle, it destroys the one that has been so for longest. Thread-safe: a handle belongs
/// either to an exchange or to this object.
///
/// Nobody else can be relied on to be active when the time of a handle is over, so a thread destroys it. The
/// thread lives while there are handles and receives no signals. It has ended when the last reference to this
/// object, and so the last connection, is gone, and before the program's exit destroys what it uses.
class IdleHandles
{
public:
    using Clock = std::chrono::steady_clock;

    /// Each has three descriptors, and a process may open 1,024 unless configured otherwise.
    static constexpr std::size_t most = 200;

    /// Where the handle of one connection is kept. Must be empty when it is destroyed: take().
    class Place
    {
    public:
        Place() = default;
        Place(const Place&) = delete;
        Place& operator=(const Place&) = delete;

    private:
        friend class IdleHandles;
        std::unique_ptr<CurlHandle> handle;
        Clock::time_point end;
        // Moved into the list of all and back, so that keeping a handle cannot fail.
        std::list<Place*> entry{this};
        std::list<Place*>::iterator position = entry.begin();
    };

    HOST_EXPORT explicit IdleHandles(std::chrono::milliseconds longestIdle);
    HOST_EXPORT ~IdleHandles();
    IdleHandles(const IdleHandles&) = delete;
    IdleHandles& operator=(const IdleHandles&) = delete;

    /// The one of the process, which lives while anybody refers to it. Throws std::bad_alloc.
    [[nodiscard]] HOST_EXPORT static std::shared_ptr<IdleHandles> shared();

    /// When no thread can be started, the handle is kept for longer.
    HOST_EXPORT void keep(Place& place, std::unique_ptr<CurlHandle> handle) noexcept;
    /// Null when the handle has been destroyed, or was never kept.
    [[nodiscard]] HOST_EXPORT std::unique_ptr<CurlHandle> take(Place& place) noexcept;

    /// Ends the thread; from now on, handles are kept until they are taken.
    HOST_EXPORT void stop();

private:
    friend class IdleHandlesOfProcess;

    [[nodiscard]] std::unique_ptr<CurlHandle> remove(Place& place) noexcept;
    void start() noexcept;
    void run();
    void forgetThread();

    const std::chrono::milliseconds longest;
    std::mutex guard;
    // Held while a handle is destroyed.
    std::mutex destroying;
    std::condition_variable changed;
    // By the end of their time.
    std::list<Place*> kept;
    bool running = false;
    bool ending = false;
    std::thread thread;
};

} // namespace hostruntime
