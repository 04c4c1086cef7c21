#include "tests/support/qtprinters.h"
#include "till/config/nearestname.h"

#include <gtest/gtest.h>

namespace {

TEST(NearestName, IsTheOneWithTheFewestChanges)
{
    const QStringList known{QStringLiteral("url"), QStringLiteral("login"), QStringLiteral("groupCode"),
        QStringLiteral("requestInterval")};
    const auto nearest = [&](const char* name) {
        return frhost::nearestName(QString::fromLatin1(name), known);
    };
    EXPECT_EQ(nearest("request_interval"), QStringLiteral("requestInterval"));
    EXPECT_EQ(nearest("GROUPCODE"), QStringLiteral("groupCode"));
    EXPECT_EQ(nearest("logn"), QStringLiteral("login"));
    EXPECT_EQ(nearest("group"), QStringLiteral("groupCode"));
    EXPECT_EQ(nearest("uri"), QStringLiteral("url"));
}

TEST(NearestName, IsEmptyWhenNothingIsKnown)
{
    EXPECT_EQ(frhost::nearestName(QStringLiteral("x"), {}), QString());
}

} // namespace
