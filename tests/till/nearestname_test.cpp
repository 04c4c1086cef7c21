#include "tests/support/qtprinters.h"
#include "till/nearestname.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(NearestName, IsTheOneWithTheFewestChanges)
{
    const QStringList known{u"url"_s, u"login"_s, u"groupCode"_s, u"requestInterval"_s};
    const auto nearest = [&](const char* name) {
        return till::nearestName(QString::fromLatin1(name), known);
    };
    EXPECT_EQ(nearest("request_interval"), u"requestInterval"_s);
    EXPECT_EQ(nearest("GROUPCODE"), u"groupCode"_s);
    EXPECT_EQ(nearest("logn"), u"login"_s);
    EXPECT_EQ(nearest("group"), u"groupCode"_s);
    EXPECT_EQ(nearest("uri"), u"url"_s);
}

TEST(NearestName, IsEmptyWhenNoneIsNear)
{
    const QStringList known{u"id"_s, u"positions"_s, u"payments"_s};
    EXPECT_EQ(till::nearestName(u"email"_s, known), QString());
    EXPECT_EQ(till::nearestName(u"xy"_s, known), QString());
    EXPECT_EQ(till::nearestName(u"postions"_s, known), u"positions"_s);
    EXPECT_EQ(till::nearestName(u"ip"_s, known), u"id"_s);
    EXPECT_EQ(till::hintFor(u"ip"_s, known), u"did you mean \"id\"?"_s);
    EXPECT_EQ(till::hintFor(u"email"_s, known), u"there are id, positions, payments"_s);
}

TEST(NearestName, IsEmptyWhenNothingIsKnown)
{
    EXPECT_EQ(till::nearestName(u"x"_s, {}), QString());
}

} // namespace
