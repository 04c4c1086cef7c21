#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;

class StandardOutput : public testing::Test
{
protected:
    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

TEST_F(StandardOutput, ThatIsFullLosesNoOutcome)
{
    const QString file = shop.receipts({QStringLiteral("r1"), QStringLiteral("r2"), QStringLiteral("r3")});
    const Ran sold =
        runInto(QStringLiteral("/dev/full"), frhostProgram(), shop.arguments({QStringLiteral("sell"), file}));
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(R"("id":"r1","line":1,"outcome":"registered")"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Standard output: "));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts not sent: 2."));
    const Ran again = shop.frhost({QStringLiteral("sell"), file});
    EXPECT_EQ(again.columns({QStringLiteral("id"), QStringLiteral("recovered")}),
        (QStringList{QStringLiteral("r1 true"), QStringLiteral("r2 -"), QStringLiteral("r3 -")}));
}

TEST_F(StandardOutput, ThatIsClosedIsNotMistakenForTheConnection)
{
    const QString file = shop.receipts({QStringLiteral("r1")});
    const Ran sold = run(QStringLiteral("sh"),
        QStringList{QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$@\" >&-"), frhostProgram()} +
            shop.arguments({QStringLiteral("sell"), file}));
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(R"("outcome":"registered")"));
}

TEST_F(StandardOutput, WhoseReaderHasGoneDoesNotEndTheProgram)
{
    const QString file = shop.receipts({QStringLiteral("r1")});
    const Ran sold = run(QStringLiteral("sh"),
        QStringList{QStringLiteral("-c"),
            QStringLiteral("{ \"$0\" \"$@\"; echo \"ended with $?\" >&2; } | true"), frhostProgram()} +
            shop.arguments({QStringLiteral("sell"), file}));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("ended with 1"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(R"("outcome":"registered")"));
}

TEST_F(StandardOutput, IsATableForPeople)
{
    QStringList arguments = shop.arguments({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    arguments.removeAll(QStringLiteral("--json"));
    const Ran sold = run(frhostProgram(), arguments);
    EXPECT_EQ(sold.exitCode, 0);
    EXPECT_TRUE(sold.out.startsWith(QStringLiteral("r1: registered\n  Service's identifier  ")))
        << sold.out.toStdString();
    EXPECT_EQ(sold.err, QString());
}

TEST_F(StandardOutput, OfATerminalIsAccompaniedByAStatusLine)
{
    const Ran sold = runOnTerminal(
        frhostProgram(), shop.arguments({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})}));
    EXPECT_EQ(sold.exitCode, 0);
    EXPECT_THAT(sold.out.toStdString(), HasSubstr("\r\x1b[K[1/1] r1: 0 s"));
    EXPECT_THAT(sold.out.toStdString(), HasSubstr(R"("outcome":"registered")"));
    EXPECT_THAT(shop.frhost({QStringLiteral("check")}).err.toStdString(), Not(HasSubstr("\x1b[K")));
}

} // namespace
