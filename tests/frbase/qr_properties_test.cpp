#include "frbase/basicfrdriver.h"
#include "frbase/qrraster.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using Row = std::vector<unsigned char>;
using Rows = std::vector<Row>;

const BasicFrDriver& driver()
{
    static BasicFrSettings settings;
    static const BasicFrDriver one(nullptr, u"qr"_s, &settings);
    return one;
}

/// Bit 0 of each entry, whatever the others are.
Rows lowestBits(Rows rows)
{
    for (Row& row : rows) {
        for (unsigned char& module : row)
            module &= 1;
    }
    return rows;
}

/// The first modules of the packed rows, as many as each row of the matrix has.
Rows unpacked(const Rows& packed, const Rows& matrix, bool reverse)
{
    Rows rows;
    for (std::size_t r = 0; r < matrix.size(); ++r) {
        rows.emplace_back();
        for (std::size_t i = 0; i < matrix[r].size(); ++i) {
            const std::size_t bit = reverse ? i % 8 : 7 - i % 8;
            rows.back().push_back(static_cast<unsigned char>(packed[r].at(i / 8) >> bit & 1));
        }
    }
    return rows;
}

TEST(PackedRows, HoldTheLowestBitOfEachModule)
{
    EXPECT_TRUE(rc::check([](const Rows& matrix, bool reverse) {
        const Rows packed = driver().convertBytes2Bits(matrix, reverse);
        RC_ASSERT(packed.size() == matrix.size());
        RC_ASSERT(unpacked(packed, matrix, reverse) == lowestBits(matrix));
    }));
}

TEST(PackedRows, HaveNoByteTooMuchAndNothingInUnusedBits)
{
    EXPECT_TRUE(rc::check([](const Row& row) {
        const Row packed = driver().convertBytes2Bits({row}, false).at(0);
        RC_ASSERT(packed.size() == (row.size() + 7) / 8);
        Row filled = row;
        filled.resize(packed.size() * 8, 0x00);
        RC_ASSERT(driver().convertBytes2Bits({filled}, false).at(0) == packed);
    }));
}

TEST(PackedRows, DifferInTheOrderOfBitsOnlyWhenReversed)
{
    EXPECT_TRUE(rc::check([](const Rows& matrix) {
        Rows packed = driver().convertBytes2Bits(matrix, false);
        for (Row& row : packed) {
            for (unsigned char& byte : row)
                byte = reverseBits(byte);
        }
        RC_ASSERT(packed == driver().convertBytes2Bits(matrix, true));
    }));
}

TEST(ReversedByte, TurnsBackWhenReversedAgain)
{
    EXPECT_TRUE(rc::check([](unsigned char byte) { RC_ASSERT(reverseBits(reverseBits(byte)) == byte); }));
}

} // namespace
