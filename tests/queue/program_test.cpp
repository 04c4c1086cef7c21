#include "tests/queue/program.h"

#include "tests/support/notifysocket.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

TEST_F(QueueProgram, StoresAReceiptOnceAndSendsNothing)
{
    EXPECT_EQ(add(receipts(2)).columns({u"id"_s, u"added"_s}), (QStringList{u"r1 true"_s, u"r2 true"_s}));
    const Ran again = add(receipts(3));
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(
        again.columns({u"id"_s, u"added"_s}), (QStringList{u"r1 false"_s, u"r2 false"_s, u"r3 true"_s}));
    EXPECT_EQ(emulator.calls(), QString());
    EXPECT_EQ(listed(), (QStringList{u"r1 queued"_s, u"r2 queued"_s, u"r3 queued"_s}));
}

TEST_F(QueueProgram, StoresNothingWhereAnyReceiptIsWrong)
{
    const QByteArray good = receiptLine(u"new"_s);
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    const Ran other = add(good + receiptLine(u"r1"_s).replace("Молоко", "Кефир"));
    EXPECT_EQ(other.exitCode, 2);
    EXPECT_THAT(other.err.toStdString(), HasSubstr("-:2: /id: another receipt is queued under \"r1\""));
    const Ran broken = add(good + "{}\n");
    EXPECT_EQ(broken.exitCode, 2);
    const Ran unacceptable = add(good + receiptLine(u"r2"_s).replace("1008", "1009"));
    EXPECT_EQ(unacceptable.exitCode, 2);
    EXPECT_THAT(unacceptable.err.toStdString(), HasSubstr("-:2: /requisites: "));
    EXPECT_EQ(listed(), QStringList{u"r1 queued"_s});
}

TEST_F(QueueProgram, RegistersAndReportsAsSellDoes)
{
    EXPECT_EQ(add(receipts(2)).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    const Ran all = queue({u"results"_s});
    EXPECT_EQ(all.columns(outcome), (QStringList{u"r1 registered"_s, u"r2 registered"_s}));
    QJsonObject line = all.lines().first();
    const QString cursor = QString::number(line.take(u"cursor"_s).toInt());
    EXPECT_EQ(queue({u"results"_s, u"--after"_s, cursor}).columns(outcome), QStringList{u"r2 registered"_s});
    const Ran waited = queue({u"wait"_s, u"r1"_s});
    EXPECT_EQ(waited.exitCode, 0);
    EXPECT_EQ(waited.lines().first(), line);
    EXPECT_EQ(sellsSeen(), 2);
    const Ran sold = shop.frhost({u"sell"_s, u"--no-journal"_s, u"-"_s}, receiptLine(u"s1"_s));
    EXPECT_EQ(line.keys(), sold.lines().first().keys());
}

TEST_F(QueueProgram, TakesUpTheReceiptOfAKilledWorkerAtOnceAndRegistersItOnce)
{
    emulator.addFault(R"("endpoint":"report","effect":"never")");
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    {
        Running killed = worker();
        ASSERT_TRUE(comesTrue([&] { return emulator.calls().contains(u"report"_s); }));
        killed.signal(SIGKILL);
        EXPECT_EQ(killed.end().exitCode, 128 + SIGKILL);
    }
    EXPECT_EQ(listed(), QStringList{u"r1 sent"_s});
    emulator.clearFaults();
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_LT(time.elapsed(), 30'000) << "the lease has not been waited for";
    EXPECT_EQ(queue({u"results"_s}).columns({u"id"_s, u"outcome"_s, u"recovered"_s, u"compared"_s}),
        QStringList{u"r1 registered true content"_s});
    EXPECT_THAT(queue({u"show"_s, u"r1"_s}).out.toStdString(), HasSubstr("takenOver"));
    EXPECT_EQ(audit(), u"1 1 0 0 0 1"_s);
}

TEST_F(QueueProgram, TakesOverFromADeadWorkerWhileItHasAllItCanHave)
{
    emulator.addFault(R"("endpoint":"report","effect":"never")");
    EXPECT_EQ(add(receipts(8)).exitCode, 0);
    Running dies = worker();
    ASSERT_TRUE(comesTrue([&] { return sellsSeen() == 4; }));
    Running busy = worker();
    ASSERT_TRUE(comesTrue([&] { return sellsSeen() == 8; }));
    dies.signal(SIGKILL);
    EXPECT_TRUE(comesTrue([&] {
        return listed() == (QStringList{u"r1 unknown"_s, u"r2 unknown"_s, u"r3 unknown"_s, u"r4 unknown"_s,
                               u"r5 sent"_s, u"r6 sent"_s, u"r7 sent"_s, u"r8 sent"_s});
    }));
}

TEST_F(QueueProgram, RecoversAReceiptWhoseAnswerWasLost)
{
    emulator.addFault(R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":1})");
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(queue({u"results"_s}).columns({u"id"_s, u"outcome"_s, u"recovered"_s, u"compared"_s}),
        QStringList{u"r1 registered true content"_s});
}

TEST_F(QueueProgram, KeepsReceiptsWhileTheAccountIsAtFault)
{
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    shop.configure(u"login"_s, u"nobody"_s);
    Running paused = worker();
    ASSERT_TRUE(paused.hasSaid("does not accept the login"));
    paused.signal(SIGTERM);
    EXPECT_EQ(paused.end().exitCode, 0);
    const Ran list = queue({u"list"_s});
    EXPECT_EQ(list.columns({u"id"_s, u"state"_s, u"attempts"_s}), QStringList{u"r1 queued 0"_s});
    EXPECT_THAT(list.err.toStdString(), HasSubstr("The register is paused: The service at"));
    shop.configure(u"login"_s, u"shop"_s);
    shop.configure(u"email"_s, u"office@example.com"_s);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), QStringList{u"r1 registered"_s});
    EXPECT_EQ(queue({u"list"_s}).err, QString());
    EXPECT_THAT(queue({u"show"_s, u"r1"_s}).out.toStdString(), HasSubstr("recomposed"));
}

TEST_F(QueueProgram, WaitsForAStoreThatIsAway)
{
    const QTemporaryDir place;
    const QString folder = place.filePath(u"disk"_s);
    shop.configureQueue(u"store"_s, folder + u"/queue.db"_s);
    EXPECT_EQ(queue({u"list"_s}).exitCode, 1);
    Running worked = worker();
    EXPECT_TRUE(
        worked.hasSaid("/disk/queue.db: the queue cannot be used: No such file or directory. The worker"));
    ASSERT_TRUE(QDir().mkdir(folder));
    EXPECT_TRUE(worked.hasSaid("/disk/queue.db: the queue can be used again."));
    EXPECT_EQ(add(receipts(1)).exitCode, 0);
    EXPECT_EQ(queue({u"wait"_s, u"r1"_s}).exitCode, 0);
    ASSERT_TRUE(QDir().rename(folder, folder + u"-away"_s));
    EXPECT_TRUE(
        worked.hasSaid("/disk/queue.db: the queue cannot be used: the file is not there any more. The"));
    // Not the place for a new one.
    ASSERT_TRUE(QDir().mkdir(folder));
    EXPECT_FALSE(worked.hasEndedWithin(1500ms));
    EXPECT_FALSE(QFileInfo::exists(folder + u"/queue.db"_s));
    ASSERT_TRUE(QDir().rmdir(folder) && QDir().rename(folder + u"-away"_s, folder));
    EXPECT_EQ(add(receipts(2)).exitCode, 0);
    EXPECT_EQ(queue({u"wait"_s, u"r2"_s}).exitCode, 0);
    worked.signal(SIGTERM);
    EXPECT_EQ(worked.end().exitCode, 0);
    EXPECT_EQ(sellsSeen(), 2);
}

TEST_F(QueueProgram, TellsTheServiceManagerHowItIs)
{
    const NotifySocket manager("@frhost-test-" + QByteArray::number(getpid()));
    qputenv("WATCHDOG_USEC", "200000");
    QByteArrayList heard;
    const auto hears = [&](const QByteArray& message) {
        return comesTrue([&] { return (heard += manager.heard()).contains(message); });
    };
    shop.configure(u"login"_s, u"nobody"_s);
    Running worked = worker();
    EXPECT_TRUE(hears("READY=1"));
    EXPECT_TRUE(hears("WATCHDOG=1"));
    EXPECT_TRUE(
        comesTrue([&] { return (heard += manager.heard()).join('\n').contains("STATUS=The service at"); }));
    EXPECT_FALSE(heard.contains("STATUS=Working"));
    EXPECT_FALSE(heard.contains("STOPPING=1"));
    worked.signal(SIGTERM);
    EXPECT_EQ(worked.end().exitCode, 0);
    EXPECT_TRUE(hears("STOPPING=1"));
    shop.configure(u"login"_s, u"shop"_s);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_TRUE(hears("STATUS=Working"));
}

TEST_F(QueueProgram, GoesOnWhenTheGroupIsCorrect)
{
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":20,"match":{"next":3})");
    EXPECT_EQ(add(receiptLine(u"r1"_s)).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), QStringList{u"r1 registered"_s});
}

TEST_F(QueueProgram, LetsSeveralWorkersOfSeveralRegistersShareTheWork)
{
    shop.configureQueue(u"parallel"_s, u"3"_s);
    EXPECT_EQ(add(receipts(12)).exitCode, 0);
    Running other = worker();
    EXPECT_EQ(work().exitCode, 0);
    other.signal(SIGTERM);
    EXPECT_EQ(other.end().exitCode, 0);
    EXPECT_EQ(results().size(), 12);
    EXPECT_EQ(results().filter(u"registered"_s).size(), 12);
    EXPECT_EQ(audit(), u"12 12 0 0 0 0"_s);
    EXPECT_EQ(sellsSeen(), 12);
}

TEST_F(QueueProgram, SendsReceiptsWhileOthersWaitForTheService)
{
    emulator.addFault(R"("endpoint":"report","effect":"never","match":{"external_id":"r1"})");
    // A pause is over, too, while the first one waits.
    emulator.addFault(R"("endpoint":"sell","effect":"close","match":{"external_id":"r3","next":1})");
    EXPECT_EQ(add(receipts(6)).exitCode, 0);
    Running worked = worker();
    EXPECT_EQ(queue({u"wait"_s, u"r2"_s, u"r3"_s, u"r4"_s, u"r5"_s, u"r6"_s}).exitCode, 0);
    EXPECT_EQ(sent(), u"r1 r2 r3 r3 r4 r5 r6"_s) << "in the order in which they came, by one register";
    EXPECT_EQ(queue({u"list"_s, u"--state"_s, u"sent"_s}).columns({u"id"_s, u"attempts"_s}),
        QStringList{u"r1 1"_s});
    emulator.clearFaults();
    EXPECT_EQ(queue({u"wait"_s, u"r1"_s}).exitCode, 0);
    worked.signal(SIGTERM);
    EXPECT_EQ(worked.end().exitCode, 0);
    EXPECT_EQ(sellsSeen(), 7);
}

TEST_F(QueueProgram, PassesByAReceiptThatIsNeverAnswered)
{
    emulator.addFault(R"("endpoint":"sell","effect":"close","match":{"external_id":"r1"})");
    EXPECT_EQ(add(receipts(3)).exitCode, 0);
    Running worked = worker();
    EXPECT_EQ(queue({u"wait"_s, u"r2"_s, u"r3"_s}).exitCode, 0);
    emulator.clearFaults();
    EXPECT_EQ(queue({u"wait"_s, u"r1"_s}).exitCode, 0);
    worked.signal(SIGTERM);
    EXPECT_EQ(worked.end().exitCode, 0);
}

// The service allows one question a second for each register of a group, here one.
TEST_F(QueueProgram, AsksAtThePaceThatTheServiceAllows)
{
    const EmulatorProcess strict({u"--pace"_s, u"--latency"_s, u"0.3"_s});
    shop.configure(u"url"_s, strict.url());
    shop.configureQueue(u"parallel"_s, u"4"_s);
    EXPECT_EQ(add(receipts(4)).exitCode, 0);
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results().filter(u"registered"_s).size(), 4);
    EXPECT_LE(strict.calls().count(u"report"_s), 16) << "not per receipt in a loop";
    EXPECT_EQ(strict.calls().count(u"sell"_s), 4) << "no outcome was lost to a refused question";
}

TEST_F(QueueProgram, DoesNotDelayARegisterByTheTroubleOfAnother)
{
    const QTemporaryDir place;
    Shop other(emulator.url());
    for (Shop* one : {&shop, &other})
        one->configureQueue(u"store"_s, place.filePath(u"queue.db"_s));
    EXPECT_EQ(add(receipts(2)).exitCode, 0);
    other.configure(u"groupCode"_s, u"shop_2"_s);
    EXPECT_EQ(other.frhost({u"queue"_s, u"add"_s, u"-"_s}, receipts(1)).exitCode, 0);
    Running paused(frhostProgram(), other.arguments({u"queue"_s, u"work"_s}));
    ASSERT_TRUE(paused.hasSaid("код группы"));
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(results(), (QStringList{u"r1 registered"_s, u"r2 registered"_s}));
    paused.signal(SIGTERM);
    EXPECT_EQ(paused.end().exitCode, 0);
    EXPECT_EQ(
        other.frhost({u"queue"_s, u"list"_s}).columns({u"id"_s, u"state"_s}), QStringList{u"r1 queued"_s});
    for (const char* subcommand : {"list", "stats", "audit"}) {
        const Ran ran = queue({QString::fromLatin1(subcommand)});
        EXPECT_EQ(ran.exitCode, 0);
        EXPECT_THAT(
            ran.err.toStdString(), ContainsRegex("another register in this queue: 1 \\(.*/shop_2\\)"));
    }
}

TEST_F(QueueProgram, AsksTheServiceAboutWhatIsDoubtful)
{
    const auto ask = [&] {
        const Ran ran = queue({u"audit"_s, u"--ask"_s});
        EXPECT_EQ(ran.exitCode, 0);
        const QJsonObject asked = ran.lines().first().value(u"asked"_s).toObject();
        QStringList counts;
        for (const char* key : {"registered", "failed", "waiting", "unclear", "unasked"})
            counts << QString::number(asked.value(QLatin1StringView(key)).toInt(-1));
        return counts.join(u' ');
    };
    EXPECT_EQ(add(receipts(1)).exitCode, 0);
    EXPECT_EQ(ask(), u"0 0 0 0 0"_s) << "it was never sent";
    // Answers without evidence, until the receipt is set aside.
    emulator.addFault(R"("endpoint":"report","effect":"without-key","key":"payload")");
    EXPECT_EQ(work().exitCode, 0);
    EXPECT_EQ(
        queue({u"list"_s}).columns({u"id"_s, u"state"_s, u"held"_s}), QStringList{u"r1 incomplete true"_s});
    EXPECT_EQ(ask(), u"1 0 0 0 0"_s);
    emulator.clearFaults();
    emulator.addFault(R"("endpoint":"report","effect":"error","code":50)");
    EXPECT_EQ(ask(), u"0 0 0 1 0"_s);
    emulator.clearFaults();
    const qsizetype sent = sellsSeen();
    EXPECT_THAT(queue({u"audit"_s, u"--ask"_s}).err.toStdString(),
        HasSubstr("r1: the service says that it is registered"));
    EXPECT_EQ(sellsSeen(), sent) << "asking sends nothing";
    emulator.addFault(R"("endpoint":"token","effect":"error","code":12)");
    EXPECT_EQ(queue({u"audit"_s, u"--ask"_s}).exitCode, 1);
}

} // namespace
