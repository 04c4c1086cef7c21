// Links the composer as an optimiser with fused multiply-add compiles it.
#include "atolonline/receiptcomposer.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

bool canRun()
{
#if defined(__x86_64__) || defined(__i386__)
    return __builtin_cpu_supports("fma");
#else
    return true;
#endif
}

double sumOf(double amount)
{
    FrPosition position;
    position.setPossum(amount);
    return atolonline::createItems({position}).first().toObject().value("sum"_L1).toDouble();
}

// Rounds every intermediate result to a double, whatever the compiler may fuse.
double roundedStepByStep(double amount)
{
    const double sign = amount > 0 ? 1 : -1;
    const volatile double half = sign * 0.005;
    const volatile double sum = amount + half;
    const volatile double kopecks = sum * 100;
    const volatile double correction = sign * 0.001;
    return std::trunc(kopecks + correction) / 100;
}

class FusedRounding : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FUSED_MULTIPLY_ADD || !canRun())
            GTEST_SKIP() << "the compiler or this processor has no fused multiply-add";
    }
};

TEST_F(FusedRounding, IsThatOfSingleSteps)
{
    const struct
    {
        double amount;
        double sum;
    } rows[] = {
        {2531.33499, 2531.33},
        {13201.45499, 13201.45},
        {14586.01499, 14586.01},
        {14720.29499, 14720.29},
        {41560.81499, 41560.82},
        {46856.12499, 46856.13},
        {57513.59499, 57513.60},
        {63189.34499, 63189.35},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sumOf(row.amount), row.sum) << row.amount;
        EXPECT_EQ(sumOf(-row.amount), -row.sum) << row.amount;
    }
}

// Less than half a kopeck by as much as the correction adds: here a last bit decides.
TEST_F(FusedRounding, IsThatOfSingleStepsWhereTheLastBitDecides)
{
    for (int kopecks = 0; kopecks < 200'000; ++kopecks) {
        const double amount = (kopecks * 31.0 * 1000 + 499) / 100'000;
        ASSERT_EQ(sumOf(amount), roundedStepByStep(amount)) << amount;
    }
}

} // namespace
