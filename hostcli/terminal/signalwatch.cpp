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

SignalWatch::SignalWatch(std::function<void(int)> action)
    : onFirst(std::move(action))
{
    sigemptyset(&watched);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(signal))
            sigaddset(&watched, signal);
    }
    sigaddset(&watched, wakeUp);
    pthread_sigmask(SIG_BLOCK, &watched, nullptr);
    watcher = std::thread([this] { watch(); });
}

SignalWatch::~SignalWatch()
{
    ending = true;
    pthread_kill(watcher.native_handle(), wakeUp);
    watcher.join();
}

void SignalWatch::watch()
{
    using Clock = std::chrono::steady_clock;
    int signal = next();
    if (signal == 0)
        return;
    const auto first = Clock::now();
    const std::jthread acting(onFirst, signal);
    do
        signal = next();
    while (signal != 0 && Clock::now() - first < oneSignal);
    if (signal == 0)
        return;
    pthread_sigmask(SIG_UNBLOCK, &watched, nullptr);
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
