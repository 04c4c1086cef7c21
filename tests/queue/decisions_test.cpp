#include "tests/queue/program.h"

#include <gmock/gmock.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::EndsWith;
using testing::HasSubstr;

TEST_F(QueueProgram, SaysWhereAReceiptThatIsHandedOverAgainIsLeft)
{
    emulator.addFault(R"("endpoint":"sell","effect":"fail","match":{"external_id":"r1"})");
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":32,"match":{"external_id":"r2"})");
    EXPECT_EQ(add(receipts(4)).exitCode, 0);
    EXPECT_EQ(queue({u"cancel"_s, u"r3"_s}).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    QStringList steps = queue({u"results"_s}).columns({u"id"_s, u"next"_s});
    steps.sort();
    EXPECT_EQ(steps, (QStringList{u"r1 retry-new-id"_s, u"r2 retry"_s, u"r4 none"_s}));
    EXPECT_EQ(queue({u"wait"_s, u"r1"_s, u"r2"_s, u"r3"_s, u"r4"_s}).columns({u"id"_s, u"next"_s}),
        (QStringList{u"r1 retry-new-id"_s, u"r2 retry"_s, u"r3 retry-new-id"_s, u"r4 none"_s}));
    const Ran again = add(receipts(5));
    EXPECT_EQ(again.exitCode, 3);
    EXPECT_EQ(again.columns({u"id"_s, u"added"_s, u"state"_s, u"next"_s}),
        (QStringList{u"r1 false failed retry-new-id"_s, u"r2 false refused retry"_s,
            u"r3 false cancelled retry-new-id"_s, u"r4 false registered none"_s, u"r5 true queued none"_s}));
    EXPECT_THAT(again.err.toStdString(), HasSubstr("r1: Nothing was registered, and this id is used up."));
    EXPECT_THAT(again.err.toStdString(), HasSubstr("then: frhost queue retry r2."));
    EXPECT_EQ(queue({u"retry"_s, u"r1"_s, u"--new-id"_s, u"r1b"_s}).exitCode, 0);
    const Ran replaced = add(receiptLine(u"r1"_s));
    EXPECT_EQ(replaced.exitCode, 3);
    EXPECT_EQ(replaced.columns({u"state"_s, u"next"_s}), QStringList{u"failed none"_s});
    EXPECT_THAT(replaced.err.toStdString(), HasSubstr("under another id: frhost queue wait r1b"));
    EXPECT_EQ(add(receiptLine(u"r4"_s)).exitCode, 0) << "it is registered";
    EXPECT_EQ(queue({u"hold"_s, u"r5"_s}).exitCode, 0);
    const Ran held = add(receipts(5).mid(receipts(4).size()));
    EXPECT_EQ(held.exitCode, 0);
    EXPECT_EQ(
        held.columns({u"id"_s, u"state"_s, u"held"_s, u"next"_s}), QStringList{u"r5 queued true release"_s});
}

TEST_F(QueueProgram, WaitsForAPersonAfterAFailure)
{
    emulator.addFault(R"("endpoint":"sell","effect":"fail","match":{"next":1})");
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), QStringList{u"r1 refused"_s});
    EXPECT_EQ(listed(), QStringList{u"r1 failed"_s});
    const Ran same = queue({u"retry"_s, u"r1"_s});
    EXPECT_EQ(same.exitCode, 1);
    EXPECT_THAT(same.err.toStdString(), HasSubstr("this id is used up: retry it with --new-id"));
    EXPECT_EQ(
        queue({u"retry"_s, u"r1"_s, u"--new-id"_s, u"r1b"_s}).columns(states), QStringList{u"r1b queued"_s});
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), (QStringList{u"r1 refused"_s, u"r1b registered"_s}));
    const Ran waited = queue({u"wait"_s, u"r1"_s, u"r1b"_s});
    EXPECT_EQ(waited.exitCode, 3);
    EXPECT_THAT(
        waited.err.toStdString(), HasSubstr("It was sent again under another id: frhost queue wait r1b"));
    EXPECT_THAT(waited.err.toStdString(), EndsWith("Receipts: 2. Registered: 1, refused: 1, unknown: 0.\n"));
    EXPECT_EQ(waited.lineWith(u"summary"_s).value(u"summary"_s).toObject(),
        (QJsonObject{{u"receipts"_s, 2}, {u"registered"_s, 1}, {u"incomplete"_s, 0}, {u"refused"_s, 1},
            {u"unknown"_s, 0}, {u"notSent"_s, 0}, {u"exitStatus"_s, 3}}));
}

TEST_F(QueueProgram, DoesWhatAPersonDecides)
{
    EXPECT_EQ(add(receipts(3)).exitCode, 0);
    EXPECT_EQ(queue({u"cancel"_s, u"r1"_s}).columns(states), QStringList{u"r1 cancelled"_s});
    EXPECT_EQ(queue({u"hold"_s, u"r2"_s}).columns({u"id"_s, u"held"_s}), QStringList{u"r2 true"_s});
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), QStringList{u"r3 registered"_s});
    const Ran held = queue({u"wait"_s, u"r1"_s, u"r2"_s});
    EXPECT_EQ(held.exitCode, 4);
    EXPECT_EQ(held.columns({u"id"_s, u"outcome"_s, u"sent"_s}),
        (QStringList{u"r1 refused false"_s, u"r2 unknown false"_s}));
    EXPECT_THAT(held.err.toStdString(), HasSubstr("r2: held until a person releases it. Look at"));
    EXPECT_EQ(queue({u"release"_s, u"r2"_s}).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(queue({u"list"_s, u"--state"_s, u"registered"_s}).columns(states),
        (QStringList{u"r2 registered"_s, u"r3 registered"_s}));
    EXPECT_EQ(queue({u"cancel"_s, u"r2"_s}).exitCode, 1);
    EXPECT_EQ(queue({u"export"_s}).columns(states),
        (QStringList{u"r1 cancelled"_s, u"r2 registered"_s, u"r3 registered"_s}));
    EXPECT_EQ(queue({u"prune"_s, u"--older-than"_s, u"1d"_s}).columns({u"removed"_s}), QStringList{u"0"_s});
    EXPECT_EQ(queue({u"show"_s, u"r9"_s}).exitCode, 1);
    const QJsonObject rates = queue({u"stats"_s}).lines().first().value(u"rates"_s).toObject();
    EXPECT_EQ(rates.value(u"finished"_s)[u"lastHour"_s], 2);
    const QString metrics = queue({u"stats"_s, u"--openmetrics"_s}).out;
    EXPECT_THAT(metrics.toStdString(), HasSubstr(",state=\"registered\"} 2\n"));
    EXPECT_TRUE(metrics.endsWith(u"# EOF\n"_s));
}

} // namespace
