#include "hostcli/terminal/signalwatch.h"

#include <pthread.h>

#include <chrono>
#include <utility>

namespace frhost {

namespace {

constexpr std::chrono::milliseconds oneSignal(250);

// Wakes the watcher. Harmless where it arrives unexpected.
constexpr int wakeUp = SIGURG;

bool isIgnored(int signal)
{
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

} // namespace

SignalWatch::SignalWatch(std::function<void()> action)
    : onFirst(std::move(action))
{
    sigemptyset(&watched);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (!isIgnored(signal))
            sigaddset(&watched, signal);
    }
    sigaddset(&watched, wakeUp);
    pthread_sigmask(SIG_BLOCK, &watched, &before);
    watcher = std::thread([this] { watch(); });
}

SignalWatch::~SignalWatch()
{
    ending = true;
    pthread_kill(watcher.native_handle(), wakeUp);
    watcher.join();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void SignalWatch::watch()
{
    using Clock = std::chrono::steady_clock;
    if (next() == 0)
        return;
    const auto first = Clock::now();
    const std::jthread acting(onFirst);
    int signal = 0;
    do
        signal = next();
    while (signal != 0 && Clock::now() - first < oneSignal);
    pthread_sigmask(SIG_UNBLOCK, &watched, nullptr);
    if (signal != 0)
        std::raise(signal);
}

int SignalWatch::next() const
{
    int signal = wakeUp;
    while (signal == wakeUp && !ending)
        sigwait(&watched, &signal);
    return signal == wakeUp ? 0 : signal;
}

} // namespace frhost
