#include "queue/work/pace.h"

#include <gtest/gtest.h>

namespace {

using namespace queue;
using namespace std::chrono_literals;

class QuestionPace : public testing::Test
{
protected:
    // How far apart two lanes ask that want to at the same moment.
    [[nodiscard]] std::chrono::milliseconds gap()
    {
        now += 1h;
        const auto first = pace.next(now);
        EXPECT_EQ(first, now) << "the first does not wait";
        return std::chrono::duration_cast<std::chrono::milliseconds>(pace.next(now) - first);
    }

    Pace pace;
    Pace::Clock::time_point now{1h};
};

TEST_F(QuestionPace, IsNotLimitedWithoutRefusals)
{
    EXPECT_EQ(gap(), 0ms);
    pace.note(false);
    EXPECT_EQ(gap(), 0ms);
}

TEST_F(QuestionPace, SlowsDownWithEachRefusalUpToALimit)
{
    for (const auto wanted : {100ms, 200ms, 400ms, 800ms, 1600ms, 2000ms, 2000ms}) {
        pace.note(true);
        EXPECT_EQ(gap(), wanted);
    }
}

TEST_F(QuestionPace, ComesBackByAndBy)
{
    pace.note(true);
    pace.note(true);
    pace.note(false);
    EXPECT_EQ(gap(), 193ms);
    for (int i = 0; i < 200; ++i)
        pace.note(false);
    EXPECT_LT(gap(), 1ms);
}

} // namespace
