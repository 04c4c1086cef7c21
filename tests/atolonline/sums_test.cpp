#include "atolonline/receiptcomposer.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

double sumOf(double possum)
{
    FrPosition position;
    position.setPossum(possum);
    return atolonline::createItems({position}).first().toObject().value("sum"_L1).toDouble();
}

// The amounts lie on either side of where rounding up begins, a thousandth of a kopeck below the half:
// slightly different constants would round one of them the other way.
TEST(ItemSum, IsRoundedWithHalfAKopeckAndAThousandthOfOne)
{
    const struct
    {
        double amount;
        double sum;
    } rows[] = {
        {12.34499, 12.35},
        {12.344985, 12.34},
        {12.3449, 12.34},
        {12.345, 12.35},
        {0.004991, 0.01},
        {0.004989, 0},
        {0.005, 0.01},
        {999.994991, 1000},
        {999.994985, 999.99},
        {42949672.944991, 42949672.95},
        {42949672.944985, 42949672.94},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(sumOf(row.amount), row.sum) << row.amount;
        EXPECT_EQ(sumOf(-row.amount), -row.sum) << -row.amount;
    }
}

// 0.1 + 0.2 + 0.3 in this order is 0.6000000000000001, in the other it is 0.6.
TEST(Total, AddsThePaymentsInAscendingOrderOfTypes)
{
    EXPECT_EQ(atolonline::getTotal({{0, 0.1}, {1, 0.2}, {2, 0.3}}), 0.6000000000000001);
    EXPECT_EQ(atolonline::getTotal({{2, 0.1}, {1, 0.2}, {0, 0.3}}), 0.6);
    EXPECT_EQ(atolonline::getTotal({{-1, 0.1}, {0, 0.2}, {14, 0.3}}), 0.6000000000000001);
}

} // namespace
