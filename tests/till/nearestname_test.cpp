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

TEST(NearestName, IsEmptyWhenNothingIsKnown)
{
    EXPECT_EQ(till::nearestName(u"x"_s, {}), QString());
}

} // namespace
