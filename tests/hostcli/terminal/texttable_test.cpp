#include "hostcli/terminal/texttable.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(TextTable, AlignsItsColumnsAndLeavesNoBlanksAtTheEnd)
{
    EXPECT_EQ(frhost::textTable({{u"Адрес"_s, u"a"_s, QString()}, {u"b"_s, QString(), u"c"_s}, {u"d"_s}}, 2),
        u"  Адрес  a\n  b         c\n  d\n"_s);
    EXPECT_EQ(frhost::textTable({}), QString());
}

TEST(Wrapping, BreaksLinesAtSpaces)
{
    EXPECT_EQ(frhost::wrapped(u"aa bb cc\ndd"_s, 5), u"aa bb\ncc\ndd"_s);
    EXPECT_EQ(frhost::wrapped(u"longword a"_s, 4), u"longword\na"_s);
    EXPECT_EQ(frhost::wrapped(u"ййй ц"_s, 5), u"ййй ц"_s);
}

} // namespace
