#include "queue/work/pause.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace queue;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

bool never()
{
    ADD_FAILURE() << "nobody has to try";
    return true;
}

TEST(Pause, LetsThroughWhereThereIsNoTrouble)
{
    Pause pause;
    EXPECT_TRUE(pause.wait(&never));
}

TEST(Pause, GrowsUpToItsLimitAndTriesAfterEach)
{
    Pause pause(4ms, 16ms);
    std::vector<Clock::time_point> tries{Clock::now()};
    pause.begin();
    EXPECT_TRUE(pause.wait([&] {
        tries.push_back(Clock::now());
        return tries.size() > 5;
    }));
    // With a jitter of a fifth.
    constexpr std::chrono::milliseconds least[] = {3ms, 6ms, 12ms, 12ms, 12ms};
    ASSERT_EQ(tries.size(), 6U);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_GE(tries[i + 1] - tries[i], least[i]) << i;
    EXPECT_TRUE(pause.isLongest());
    EXPECT_FALSE(pause.forget());
    EXPECT_FALSE(pause.isLongest());
}

TEST(Pause, KnowsWhichTroubleIsNews)
{
    Pause pause;
    const QString silence = QStringLiteral("silence");
    EXPECT_FALSE(pause.forget());
    EXPECT_TRUE(pause.isNews(silence));
    EXPECT_FALSE(pause.isNews(silence));
    EXPECT_TRUE(pause.isNews(QStringLiteral("wrong login")));
    EXPECT_TRUE(pause.isNews(silence));
    EXPECT_TRUE(pause.forget());
    EXPECT_FALSE(pause.forget());
    EXPECT_TRUE(pause.isNews(silence));
}

TEST(Pause, HasOneLaneTryForAll)
{
    Pause pause(1ms, 1ms);
    pause.begin();
    std::atomic<int> tries = 0;
    const auto isOver = [&] {
        ++tries;
        std::this_thread::sleep_for(20ms);
        return true;
    };
    std::jthread other([&] { EXPECT_TRUE(pause.wait(isOver)); });
    EXPECT_TRUE(pause.wait(isOver));
    other.join();
    EXPECT_EQ(tries, 1);
}

TEST(Pause, IsTriedByALaneThatDoesNotWait)
{
    Pause pause(5ms, 5ms);
    pause.tryNow(&never);
    pause.begin();
    EXPECT_TRUE(pause.isBegun());
    int tries = 0;
    const auto isOver = [&] { return ++tries == 2; };
    pause.tryNow(isOver);
    EXPECT_EQ(tries, 0) << "it is not time yet";
    const auto end = Clock::now() + 10s;
    while (pause.isBegun() && Clock::now() < end)
        pause.tryNow(isOver);
    EXPECT_EQ(tries, 2);
    EXPECT_FALSE(pause.isBegun());
    EXPECT_TRUE(pause.wait(&never));
}

TEST(Pause, EndsWhenTheWorkerIsToStop)
{
    Pause pause(1h, 1h);
    pause.begin();
    std::jthread other([&] { pause.stop(); });
    EXPECT_FALSE(pause.wait(&never));
    EXPECT_FALSE(pause.rest(1h));
}

} // namespace
