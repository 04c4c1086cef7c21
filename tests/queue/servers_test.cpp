#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"
#include "tests/queue/store/postgresserver.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

// Two tills of one shop with one queue on a server.
class QueueOnPostgreSQL : public testing::Test
{
protected:
    void SetUp() override
    {
        if (const QString why = PostgresServer::whyMissing(); !why.isEmpty())
            GTEST_SKIP() << why.toStdString();
        const QString place = PostgresServer::instance().newPlace();
        first.configureQueue(u"store"_s, place);
        second.configureQueue(u"store"_s, place);
    }

    [[nodiscard]] static Ran queue(
        const Shop& shop, const QStringList& arguments, const QByteArray& input = {})
    {
        return shop.frhost(QStringList{u"queue"_s} + arguments, input);
    }
    [[nodiscard]] static Ran add(const Shop& shop, const QByteArray& receipts)
    {
        return queue(shop, {u"add"_s, u"-"_s}, receipts);
    }
    [[nodiscard]] static Running worker(const Shop& shop)
    {
        return {frhostProgram(), shop.arguments({u"queue"_s, u"work"_s})};
    }
    // Accepted, registered, under way, lost, doubled and recovered.
    [[nodiscard]] QString audit() const
    {
        return queue(second, {u"audit"_s})
            .columns({u"accepted"_s, u"registered"_s, u"underWay"_s, u"lost"_s, u"doubled"_s, u"recovered"_s})
            .join(u' ');
    }

    EmulatorProcess emulator;
    Shop first{emulator.url()};
    Shop second{emulator.url()};
};

TEST_F(QueueOnPostgreSQL, IsSharedByMachines)
{
    QByteArray receipts;
    for (int i = 1; i <= 8; ++i)
        receipts += receiptLine(u"r%1"_s.arg(i));
    EXPECT_EQ(add(first, receipts).exitCode, 0);
    EXPECT_EQ(add(second, receiptLine(u"r1"_s)).columns({u"id"_s, u"added"_s}), QStringList{u"r1 false"_s});
    Running other = worker(first);
    EXPECT_EQ(queue(second, {u"work"_s, u"--until-empty"_s}).exitCode, 0);
    other.signal(SIGTERM);
    EXPECT_EQ(other.end().exitCode, 0);
    EXPECT_EQ(audit(), u"8 8 0 0 0 0"_s);
    EXPECT_EQ(emulator.calls().count(u"sell"_s), 8);
}

TEST_F(QueueOnPostgreSQL, TakesUpTheReceiptOfAKilledWorkerAtOnce)
{
    emulator.addFault(R"("endpoint":"report","effect":"never")");
    EXPECT_EQ(add(first, receiptLine(u"r1"_s)).exitCode, 0);
    Running killed = worker(first);
    ASSERT_TRUE(comesTrue([&] { return emulator.calls().contains(u"report"_s); }));
    Running other = worker(second);
    ASSERT_TRUE(comesTrue([&] { return emulator.calls().count(u"token"_s) == 2; }));
    emulator.clearFaults();
    QElapsedTimer time;
    time.start();
    killed.signal(SIGKILL);
    EXPECT_EQ(killed.end().exitCode, 128 + SIGKILL);
    EXPECT_EQ(queue(second, {u"wait"_s, u"r1"_s}).exitCode, 0);
    RecordProperty("milliseconds", QByteArray::number(time.elapsed()).toStdString());
    EXPECT_LT(time.elapsed(), 30'000) << "the lease has not been waited for";
    other.signal(SIGTERM);
    EXPECT_EQ(other.end().exitCode, 0);
    EXPECT_THAT(queue(second, {u"show"_s, u"r1"_s}).out.toStdString(), HasSubstr("takenOver"));
    EXPECT_EQ(audit(), u"1 1 0 0 0 1"_s);
}

TEST_F(QueueOnPostgreSQL, GoesOnWhenItsServerWasKilledWhileAReceiptWasOnTheWire)
{
    emulator.addFault(R"("endpoint":"report","effect":"never")");
    EXPECT_EQ(add(first, receiptLine(u"r1"_s)).exitCode, 0);
    Running worked = worker(first);
    ASSERT_TRUE(comesTrue([&] { return emulator.calls().contains(u"report"_s); }));
    PostgresServer::instance().kill();
    emulator.clearFaults();
    EXPECT_TRUE(worked.hasSaid("The worker waits for it."));
    const Ran refused = add(first, receiptLine(u"r2"_s));
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err.toStdString(), HasSubstr(": the queue cannot be used: "));
    PostgresServer::instance().start();
    EXPECT_TRUE(worked.hasSaid("the queue can be used again."));
    EXPECT_EQ(add(first, receiptLine(u"r2"_s)).exitCode, 0);
    EXPECT_EQ(queue(first, {u"wait"_s, u"r1"_s, u"r2"_s}).exitCode, 0);
    worked.signal(SIGTERM);
    const Ran end = worked.end();
    EXPECT_EQ(end.exitCode, 0);
    EXPECT_THAT(end.err.toStdString(), testing::Not(HasSubstr("QSql")));
    EXPECT_EQ(audit(), u"2 2 0 0 0 1"_s);
}

} // namespace
