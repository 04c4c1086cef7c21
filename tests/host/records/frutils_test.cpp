#include "host/records/frutils.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

namespace {

struct Scan
{
    const char* name;
    const char* scan;
    ExciseMarkType type;
    const char* bytes;
};

class NomenclatureCode : public testing::TestWithParam<Scan>
{
};

TEST_P(NomenclatureCode, IsBuiltFromTheScan)
{
    const FdRequisite requisite =
        FrUtils::createNomenclatureCodeRequisite(QString::fromUtf8(GetParam().scan), GetParam().type);
    EXPECT_EQ(requisite.getTag(), 1162);
    EXPECT_EQ(requisite.getRawData().toHex(' ').toUpper(), QByteArray(GetParam().bytes));
}

constexpr Scan scans[] = {
    {"DataMatrix", "010463003407001221CMK45BrhN0WLf", ExciseMarkType::ByForm,
        "44 4D 04 36 03 89 39 FC 43 4D 4B 34 35 42 72 68 4E 30 57 4C 66"},
    {"DataMatrixEndsAtTheSeparator",
        "010463003407001221CMK45BrhN0WLf\x1D"
        "91EE06\x1D"
        "92abcdef",
        ExciseMarkType::ByForm, "44 4D 04 36 03 89 39 FC 43 4D 4B 34 35 42 72 68 4E 30 57 4C 66"},
    {"DataMatrixWithDroppedSeparators", "010463003407001221CMK45BrhN0WLf91EE0692abcdef",
        ExciseMarkType::ByForm, "44 4D 04 36 03 89 39 FC 43 4D 4B 34 35 42 72 68 4E 30 57 4C 66"},
    {"DataMatrixWithScannerPrefix",
        "]d2\x1D"
        "010463003407001221CMK45BrhN0WLf",
        ExciseMarkType::ByForm, "44 4D 04 36 03 89 39 FC 43 4D 4B 34 35 42 72 68 4E 30 57 4C 66"},
    {"DataMatrixWithShortSerial",
        "010463003407001221abc123\x1D"
        "93XyZw",
        ExciseMarkType::ByForm, "44 4D 04 36 03 89 39 FC 61 62 63 31 32 33"},
    {"LongSerialIsCutTo32Bytes", "010463003407001221ABCDEFGHIJKLMNOPQRSTUVWXYZ", ExciseMarkType::ByForm,
        "44 4D 04 36 03 89 39 FC 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57 58"},
    {"TobaccoBlock",
        "010460043993125621JgXJ5.T\x1D"
        "8005112000\x1D"
        "93abcd",
        ExciseMarkType::Tobacco, "44 4D 04 2F 1F 96 81 78 4A 67 58 4A 35 2E 54 31 31 32 30 30 30"},
    {"TobaccoBlockWithoutSeparators", "010460043993125621JgXJ5.T800511200093abcd", ExciseMarkType::ByForm,
        "44 4D 04 2F 1F 96 81 78 4A 67 58 4A 35 2E 54 31 31 32 30 30 30"},
    {"TobaccoPack", "04600439931256JgXJ5.TAB12cdef", ExciseMarkType::Tobacco,
        "44 4D 04 2F 1F 96 81 78 4A 67 58 4A 35 2E 54 41 42 31 32"},
    {"Ean13", "4606203090785", ExciseMarkType::ByForm, "45 0D 04 30 77 19 57 61"},
    {"FurByType", "RU-401301-AAA0277031", ExciseMarkType::Fur,
        "52 46 52 55 2D 34 30 31 33 30 31 2D 41 41 41 30 32 37 37 30 33 31"},
    {"FurByForm", "RU-401301-AAA0277031", ExciseMarkType::ByForm,
        "52 46 52 55 2D 34 30 31 33 30 31 2D 41 41 41 30 32 37 37 30 33 31"},
    {"NothingFromAnEmptyCode", "", ExciseMarkType::ByForm, ""},
    {"NothingFromAnUnknownForm", "hello", ExciseMarkType::ByForm, ""},
    {"NothingFromLettersOutsideAscii", "010463003407001221Серия", ExciseMarkType::ByForm, ""},
};

INSTANTIATE_TEST_SUITE_P(Scans, NomenclatureCode, testing::ValuesIn(scans),
    [](const testing::TestParamInfo<Scan>& scan) { return scan.param.name; });

} // namespace
