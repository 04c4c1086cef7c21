#include "hostcli/terminal/texttable.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

namespace {

TEST(TextTable, AlignsItsColumnsAndLeavesNoBlanksAtTheEnd)
{
    EXPECT_EQ(
        frhost::textTable({{QStringLiteral("Адрес"), QStringLiteral("a"), QString()},
                              {QStringLiteral("b"), QString(), QStringLiteral("c")}, {QStringLiteral("d")}},
            2),
        QStringLiteral("  Адрес  a\n  b         c\n  d\n"));
    EXPECT_EQ(frhost::textTable({}), QString());
}

} // namespace
