#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;
using testing::Not;

class StandardOutput : public testing::Test
{
protected:
    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

TEST_F(StandardOutput, LosesNoOutcomeWhenItIsFull)
{
    const QString file = shop.receipts({u"r1"_s, u"r2"_s, u"r3"_s});
    const Ran sold = Running(frhostProgram(), shop.arguments({u"sell"_s, file}), u"/dev/full"_s).end();
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_THAT(
        sold.err.toStdString(), HasSubstr(R"("id":"r1","line":1,"next":"none","outcome":"registered")"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Standard output: "));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts not sent: 2."));
    const Ran again = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(again.columns({u"id"_s, u"recovered"_s}), (QStringList{u"r1 true"_s, u"r2 -"_s, u"r3 -"_s}));
}

TEST_F(StandardOutput, IsNotMistakenForTheConnectionWhenItIsClosed)
{
    const QString file = shop.receipts({u"r1"_s});
    const Ran sold = run(u"sh"_s, QStringList{u"-c"_s, u"exec \"$0\" \"$@\" >&-"_s, frhostProgram()} +
                                      shop.arguments({u"sell"_s, file}));
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(R"("outcome":"registered")"));
}

TEST_F(StandardOutput, DoesNotEndTheProgramWhenItsReaderIsGone)
{
    const QString file = shop.receipts({u"r1"_s});
    const Ran sold = run(u"sh"_s,
        QStringList{u"-c"_s, u"{ \"$0\" \"$@\"; echo \"ended with $?\" >&2; } | true"_s, frhostProgram()} +
            shop.arguments({u"sell"_s, file}));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("ended with 1"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr(R"("outcome":"registered")"));
}

TEST_F(StandardOutput, ThatExceedsTheLargestSizeOfAFileLosesNoOutcome)
{
    const QString file = shop.receipts({u"r1"_s, u"r2"_s});
    const QString full = shop.file(u"full"_s, QByteArray(512 * 1024, '\n'));
    const Ran sold =
        run(u"sh"_s, QStringList{u"-c"_s, u"ulimit -f 1024; out=$1; shift; exec \"$@\" >> \"$out\""_s,
                         u"sh"_s, full, frhostProgram()} +
                         shop.arguments({u"sell"_s, file}));
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_THAT(
        sold.err.toStdString(), HasSubstr(R"("id":"r1","line":1,"next":"none","outcome":"registered")"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Standard output: File too large"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts not sent: 1."));
}

TEST_F(StandardOutput, IsATableWithoutJson)
{
    QStringList arguments = shop.arguments({u"sell"_s, shop.receipts({u"r1"_s})});
    arguments.removeAll(u"--json"_s);
    const Ran sold = run(frhostProgram(), arguments);
    EXPECT_EQ(sold.exitCode, 0);
    EXPECT_TRUE(sold.out.startsWith(u"r1: registered\n  Service's identifier  "_s)) << sold.out.toStdString();
    EXPECT_EQ(sold.err, QString());
}

TEST_F(StandardOutput, HasAStatusLineOnATerminal)
{
    const Ran sold = runOnTerminal(frhostProgram(), shop.arguments({u"sell"_s, shop.receipts({u"r1"_s})}));
    EXPECT_EQ(sold.exitCode, 0);
    EXPECT_THAT(sold.out.toStdString(), HasSubstr("\r\x1b[K[1/1] r1: 0 s"));
    EXPECT_THAT(sold.out.toStdString(), HasSubstr(R"("outcome":"registered")"));
    EXPECT_THAT(shop.frhost({u"check"_s}).err.toStdString(), Not(HasSubstr("\x1b[K")));
}

} // namespace
