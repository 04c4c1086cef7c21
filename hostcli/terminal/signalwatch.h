#pragma once

#include <QtGlobal>

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

namespace frhost {

/// Waits for SIGINT, SIGTERM and SIGHUP in a thread of its own, so that they are answered at once whatever
/// the others are blocked in.
///
/// The first signal calls a function. A second one ends the program by its default action, also when that
/// function hangs; one that comes within a quarter of a second counts as the first, because `timeout` and
/// some terminals send each signal twice. A signal that the program was started with ignored stays ignored.
class SignalWatch
{
public:
    /// `action` is called once, with the signal and in another thread, and must not throw. Create the watch
    /// before all threads that live as long.
    explicit SignalWatch(std::function<void(int)> action);
    /// Waits for the action to return, if it was called. The signals stay blocked, so that none of them
    /// changes the status of a program that has done its work.
    ~SignalWatch();
    Q_DISABLE_COPY_MOVE(SignalWatch)

private:
    void watch();
    // The next signal; 0 when the watch is to end.
    [[nodiscard]] int next() const;

    std::function<void(int)> onFirst;
    sigset_t watched{};
    std::atomic<bool> ending = false;
    std::thread watcher;
};

} // namespace frhost
