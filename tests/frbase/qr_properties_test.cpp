#include "frbase/basicfrdriver.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Row = std::vector<unsigned char>;
using Rows = std::vector<Row>;

// The modules of a packed row, including the padding of its last byte.
Row unpacked(const Row& packed, bool reverse)
{
    Row modules;
    for (const unsigned char byte : packed) {
        for (int i = 0; i < 8; ++i)
            modules.push_back(static_cast<unsigned char>(byte >> (reverse ? i : 7 - i) & 1));
    }
    return modules;
}

TEST(PackedRows, HoldTheLowestBitOfEachModulePaddedWithZeros)
{
    BasicFrSettings settings;
    const BasicFrDriver driver(nullptr, u"qr"_s, &settings);
    EXPECT_TRUE(rc::check([&](const Rows& matrix, bool reverse) {
        Rows expected = matrix;
        for (Row& row : expected) {
            for (unsigned char& module : row)
                module &= 1;
            row.resize((row.size() + 7) / 8 * 8);
        }
        Rows actual;
        for (const Row& row : driver.convertBytes2Bits(matrix, reverse))
            actual.push_back(unpacked(row, reverse));
        RC_ASSERT(actual == expected);
    }));
}

} // namespace
