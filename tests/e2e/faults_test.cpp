#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"
#include "tests/e2e/tables/faults.h"

#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

class Fault : public testing::TestWithParam<FaultRow>
{
};

QString summary(const Ran& ran)
{
    return (QStringList{QString::number(ran.exitCode)} + ran.columns({u"outcome"_s, u"recovered"_s}))
        .join(u' ');
}

TEST_P(Fault, LeavesOneReceiptAndATrueReport)
{
    const FaultRow& row = GetParam();
    const EmulatorProcess emulator;
    const Shop shop(emulator.url());
    const QStringList command{u"sell"_s, shop.receipts({u"r1"_s})};

    emulator.addFault(row.fault);
    const Ran meanwhile = shop.frhost(command);
    emulator.clearFaults();
    const Ran afterwards = shop.frhost(command);

    EXPECT_EQ((QStringList{summary(meanwhile), summary(afterwards)}),
        (QStringList{QString::fromLatin1(row.meanwhile), QString::fromLatin1(row.afterwards)}))
        << meanwhile.err.toStdString() << afterwards.err.toStdString();
    EXPECT_THAT(meanwhile.err.toStdString(), HasSubstr(row.advice));
    EXPECT_EQ(meanwhile.lines().value(0).contains(u"fiscal"_s), meanwhile.exitCode == 0);
    EXPECT_EQ(emulator.expect(u"external_id=r1&count=1&"_s + QString::fromLatin1(row.document)),
        u"receipts: 1, all as expected"_s);
    EXPECT_EQ(emulator.expect(u"count=1"_s), u"receipts: 1, all as expected"_s);
}

// A row of the table: which of six receipts a fault hits, and so refuses.
struct Match
{
    const char* name;
    const char* match;
    const char* refusedOnes;
};

const Match matches[] = {
    {"EverySecond", R"({"every":2})", "r2 r4 r6"},
    {"AllAfterFour", R"({"after":4})", "r5 r6"},
    {"TheNextTwo", R"({"next":2})", "r1 r2"},
    {"EverySecondAfterOneButTwoAtMost", R"({"after":1,"every":2,"next":2})", "r3 r5"},
    {"AnId", R"({"external_id":"r4"})", "r4"},
    {"APatternOfThisLoginAndGroup", R"({"external_id":"r?","login":"shop","group":"shop_1","every":3})",
        "r3 r6"},
};

class FaultOfMany : public testing::TestWithParam<Match>
{
};

TEST_P(FaultOfMany, HitsExactlyTheMatchingReceipts)
{
    const EmulatorProcess emulator;
    emulator.addFault(QByteArray(R"("endpoint":"sell","effect":"fail","match":)") + GetParam().match);
    const Shop shop(emulator.url());
    QStringList ids;
    for (int i = 1; i <= 6; ++i)
        ids << u"r%1"_s.arg(i);
    const Ran ran = shop.frhost({u"sell"_s, shop.receipts(ids)});

    const QStringList refusedOnes = QString::fromLatin1(GetParam().refusedOnes).split(u' ');
    QStringList expected;
    for (const QString& id : ids)
        expected << id + (refusedOnes.contains(id) ? u" refused"_s : u" registered"_s);
    EXPECT_EQ(ran.columns({u"id"_s, u"outcome"_s}), expected) << ran.err.toStdString();
    EXPECT_EQ(emulator.expect(u"external_id=r*&operation=sell&count=6&wire_requests=1"_s),
        u"receipts: 6, all as expected"_s);
    for (const QString& id : ids) {
        const QString status = refusedOnes.contains(id) ? u"fail"_s : u"done"_s;
        EXPECT_EQ(emulator.expect(u"external_id=%1&status=%2"_s.arg(id, status)),
            u"receipts: 1, all as expected"_s);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, FaultOfMany, testing::ValuesIn(matches), [](const auto& of) { return std::string(of.param.name); });

INSTANTIATE_TEST_SUITE_P(Of, Fault, testing::ValuesIn(faultRows().begin(), faultRows().end()),
    [](const auto& of) { return std::string(of.param.name); });

// A service that answers a login and nothing else.
TEST(Collection, TellsOfEachDocumentThatItDoesNotReach)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close")");
    Shop shop(emulator.url());
    const Ran silent = shop.frhost({u"collect"_s, u"a"_s, u"b"_s, u"c"_s});
    EXPECT_EQ(silent.exitCode, 4);
    const QStringList shown{u"line"_s, u"uuid"_s, u"outcome"_s, u"sent"_s, u"next"_s};
    EXPECT_EQ(silent.columns(shown), QStringList{u"1 a unknown false rerun"_s});
    EXPECT_EQ(silent.unreached().size(), 2);
    EXPECT_EQ(silent.lineWith(u"summary"_s).value(u"summary"_s)[u"notSent"].toInt(), 2);
    EXPECT_THAT(silent.err.toStdString(), HasSubstr("No answer from the service: the connection broke off."));
    EXPECT_THAT(silent.err.toStdString(), HasSubstr("Not asked about: 2."));
    shop.configure(u"password"_s, u"wrong-canary"_s);
    const Ran rejected = shop.frhost({u"collect"_s, u"a"_s, u"b"_s});
    EXPECT_EQ(rejected.exitCode, 1);
    EXPECT_EQ(rejected.unreached().size(), 2);
    EXPECT_EQ(rejected.out.count(u"\"next\":\"account\""_s), 3);
}

} // namespace
