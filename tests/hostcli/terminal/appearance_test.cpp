#include "hostcli/terminal/appearance.h"

#include "hostcli/terminal/resultreport.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

TEST(Appearance, FollowsTheEnvironment)
{
    const QByteArray terminal = qgetenv("TERM");
    qputenv("TERM", "xterm");
    qunsetenv("NO_COLOR");
    EXPECT_TRUE(showsColours());
    qputenv("NO_COLOR", "");
    EXPECT_TRUE(showsColours()) << "an empty one counts as none";
    qputenv("NO_COLOR", "1");
    EXPECT_FALSE(showsColours());
    EXPECT_TRUE(showsPictures());
    qunsetenv("NO_COLOR");
    qputenv("TERM", "dumb");
    EXPECT_FALSE(showsColours());
    EXPECT_FALSE(showsPictures());
    qputenv("TERM", terminal);
}

TEST(Appearance, ColoursTheOutcomeAlone)
{
    till::ReceiptResult result;
    result.id = u"i"_s;
    result.outcome = till::Outcome::Refused;
    EXPECT_EQ(toText(result, true), u"i: \x1b[31mrefused\x1b[0m\n"_s);
    result.outcome = till::Outcome::Registered;
    EXPECT_EQ(toText(result, true), u"i: \x1b[32mregistered\x1b[0m\n"_s);
    result.outcome = till::Outcome::Unknown;
    EXPECT_EQ(toText(result, true), u"i: \x1b[33munknown\x1b[0m\n"_s);
}

} // namespace
