#include "till/wire/servicecodes.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace till;

std::vector<int> codesThat(bool ServiceCodeMeaning::*hold)
{
    std::vector<int> codes;
    for (int code = -10; code <= 3000; ++code) {
        if (meaningOf(ServiceCode{code}).*hold)
            codes.push_back(code);
    }
    return codes;
}

TEST(ServiceCodes, MeanWhatTheServiceSaysOfThem)
{
    EXPECT_EQ(codesThat(&ServiceCodeMeaning::refusesReceipt),
        (std::vector{1, 2, 12, 13, 14, 20, 21, 30, 31, 32, 40, 41}));
    EXPECT_EQ(codesThat(&ServiceCodeMeaning::concernsRequest),
        (std::vector{0, 10, 11, 12, 13, 14, 20, 21, 30, 31, 33, 34, 40, 41, 50}));
    EXPECT_EQ(codesThat(&ServiceCodeMeaning::concernsAccount), (std::vector{12, 13, 14, 20, 21}));
}

} // namespace
