#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

const QStringList outcome{u"line"_s, u"id"_s, u"outcome"_s, u"next"_s};

TEST(StreamOfReceipts, AnswersEachLineWhateverBecameOfTheOthers)
{
    const EmulatorProcess emulator;
    emulator.addFault(
        R"("endpoint":"sell","effect":"close","phase":"after","match":{"external_id":"r1","next":1})");
    const Shop shop(emulator.url());
    const Ran ran = shop.frhost({u"sell"_s, u"-"_s, u"--stream"_s},
        receiptLine(u"r1"_s) + "nonsense\n\n" + receiptLine(u"r1"_s) + receiptLine(u"r2"_s));
    EXPECT_EQ(ran.columns(outcome), (QStringList{u"1 r1 unknown rerun"_s, u"2 - refused correct"_s,
                                        u"4 r1 registered none"_s, u"5 r2 registered none"_s}))
        << ran.err.toStdString();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.lineWith(u"summary"_s).value(u"summary"_s)[u"receipts"].toInt(), 4);
}

// The second receipt is given only once the first is answered.
TEST(StreamOfReceipts, AnswersAReceiptBeforeTheNextArrives)
{
    const EmulatorProcess emulator;
    const Shop shop(emulator.url());
    const QString out = shop.file(u"out"_s, {});
    const QString script =
        u"{ cat $1; i=0; until grep -q '\"r1\"' $3 || [ $((i += 1)) -gt 200 ]; do sleep 0.05; done; "
        "[ $i -gt 200 ] || cat $2; } | { out=$3; shift 3; \"$@\" >$out; }"_s;
    QStringList arguments{u"-c"_s, script, u"sh"_s, shop.file(u"first"_s, receiptLine(u"r1"_s)),
        shop.file(u"second"_s, receiptLine(u"r2"_s)), out, frhostProgram()};
    arguments += shop.arguments({u"sell"_s, u"-"_s, u"--stream"_s});
    const Ran ran = run(u"sh"_s, arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err.toStdString();
    EXPECT_EQ(emulator.calls().count(u"sell"_s), 2);
}

TEST(StreamOfReceipts, EndsWhereTheServiceRefusesTheAccount)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":20)");
    const Shop shop(emulator.url());
    const Ran ran =
        shop.frhost({u"send"_s, u"-"_s, u"--stream"_s}, receiptLine(u"r1"_s) + receiptLine(u"r2"_s));
    EXPECT_EQ(ran.exitCode, 3);
    EXPECT_EQ(ran.columns(outcome), QStringList{u"1 r1 refused account"_s});
}

TEST(RetriedSale, SettlesALostAnswerUnderTheSameId)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s}), u"--retry-for"_s, u"1m"_s});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns({u"id"_s, u"outcome"_s, u"recovered"_s, u"compared"_s}),
        (QStringList{u"r1 registered true content"_s, u"r2 registered - -"_s}));
    EXPECT_THAT(sold.err.toStdString(),
        HasSubstr("r1: No answer from the service: the connection broke off. Trying again.\n"));
    EXPECT_EQ(emulator.calls(), u"token sell sell report sell report"_s);
}

TEST(RetriedSale, SaysThatTheServiceCannotBeReachedYet)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"token","effect":"close","match":{"next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s}), u"--retry-for"_s, u"1m"_s});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_THAT(
        sold.err.toStdString(), HasSubstr("the connection broke off. Check the network, and try again. "
                                          "No receipt was sent. Trying again.\n"));
}

} // namespace
