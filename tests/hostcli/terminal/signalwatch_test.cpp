#include "hostcli/terminal/signalwatch.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <semaphore>
#include <thread>
#include <unistd.h>

namespace {

using frhost::SignalWatch;

sigset_t blockedSignals()
{
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return blocked;
}

TEST(SignalWatch, CallsInAThreadOfItsOwn)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        std::binary_semaphore called(0);
        std::thread::id where;
        int what = 0;
        const SignalWatch watch([&](int number) {
            what = number;
            where = std::this_thread::get_id();
            called.release();
        });
        kill(getpid(), signal);
        called.acquire();
        EXPECT_EQ(what, signal);
        EXPECT_NE(where, std::this_thread::get_id());
    }
}

// A program that has done its work must end with its own status.
TEST(SignalWatch, LeavesTheSignalsBlocked)
{
    {
        const SignalWatch watch([](int) {});
    }
    const sigset_t after = blockedSignals();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(sigismember(&after, signal), 1);
        kill(getpid(), signal);
    }
    sigset_t pending;
    sigpending(&pending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(sigismember(&pending, signal), 1);
        std::signal(signal, SIG_IGN);
        std::signal(signal, SIG_DFL);
    }
}

} // namespace
