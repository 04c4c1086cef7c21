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
    for (const int signal : {SIGINT, SIGTERM}) {
        std::binary_semaphore called(0);
        std::thread::id where;
        const SignalWatch watch([&] {
            where = std::this_thread::get_id();
            called.release();
        });
        kill(getpid(), signal);
        called.acquire();
        EXPECT_NE(where, std::this_thread::get_id());
    }
}

TEST(SignalWatch, LeavesTheSignalsAsTheyWere)
{
    {
        const SignalWatch watch([] {});
        const sigset_t during = blockedSignals();
        EXPECT_EQ(sigismember(&during, SIGINT), 1);
        EXPECT_EQ(sigismember(&during, SIGTERM), 1);
    }
    const sigset_t after = blockedSignals();
    EXPECT_EQ(sigismember(&after, SIGINT), 0);
    EXPECT_EQ(sigismember(&after, SIGTERM), 0);
}

} // namespace
