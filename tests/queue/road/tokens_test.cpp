#include "hostcli/terminal/resultreport.h"
#include "queue/work/worker.h"
#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/service.h"
#include "tests/e2e/tables/faults.h"
#include "tests/e2e/tables/tokens.h"
#include "tests/queue/road/till.h"

#include <QLoggingCategory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using testing::EndsWith;
using testing::HasSubstr;

// The faults that concern a token, by whether `sell` gets on all the same: where it does not, the table has a
// status alone.
std::vector<FaultRow> tokenRows(bool isUsed)
{
    std::vector<FaultRow> rows;
    std::ranges::copy_if(faultRows(), std::back_inserter(rows), [&](const FaultRow& row) {
        return QByteArray(row.fault).contains(R"("endpoint":"token")") &&
               QByteArray(row.meanwhile).contains(' ') == isUsed;
    });
    return rows;
}

// A till whose worker is a function: it gives up soon, and not after a minute.
class TokensOnTheRoad : public testing::Test
{
protected:
    TokensOnTheRoad() { QLoggingCategory::setFilterRules(u"frdriver*=false"_s); }
    ~TokensOnTheRoad() override { QLoggingCategory::setFilterRules({}); }
    Q_DISABLE_COPY_MOVE(TokensOnTheRoad)

    [[nodiscard]] bool work(const QueueTill& till)
    {
        queue::Surroundings surroundings;
        // The configuration is the second argument of every call.
        surroundings.config = till::readRegisterConfig(till.shop.arguments({}).value(1));
        surroundings.store = surroundings.config.queue.store;
        surroundings.address = till.address();
        surroundings.plugin = till::pluginAt(QStringLiteral(PLUGIN_FOLDER "/libatolonline.so"));
        surroundings.toLine = [](const till::ReceiptResult& result) {
            return frhost::toJsonLine(result).trimmed();
        };
        surroundings.say = [this](const QString& text) { said += text + u'\n'; };
        surroundings.lease = 5s;
        surroundings.idle = 5ms;
        surroundings.untilEmpty = true;
        return queue::Worker(surroundings, 1, u"w"_s, {5ms, 20ms}).run();
    }

    // No attempt counts against the receipt.
    void expectInVain(const QueueTill& till)
    {
        EXPECT_FALSE(work(till)) << said.toStdString();
        EXPECT_EQ(till.entry(u"r1"_s).state, queue::State::Queued);
        EXPECT_EQ(till.entry(u"r1"_s).attempt, 0);
    }
    static void expectRegistered(const QueueTill& till, const QString& id)
    {
        EXPECT_EQ(till.queue({u"wait"_s, id}).columns({u"outcome"_s, u"recovered"_s}),
            QStringList{u"registered -"_s});
    }

    QString said;
};

TEST_F(TokensOnTheRoad, AreWaitedForWithReceiptsUnharmed)
{
    const EmulatorProcess emulator;
    const QueueTill till(emulator.url());
    ASSERT_EQ(till.add({u"r1"_s}).exitCode, 0);
    for (const FaultRow& row : tokenRows(false)) {
        SCOPED_TRACE(row.name);
        emulator.addFault(row.fault);
        expectInVain(till);
        emulator.clearFaults();
    }
    EXPECT_THAT(till.queue({u"list"_s}).err.toStdString(), HasSubstr("The register is paused: "));
    EXPECT_TRUE(work(till)) << said.toStdString();
    expectRegistered(till, u"r1"_s);
    EXPECT_EQ(till.queue({u"list"_s}).err, QString());
}

TEST_F(TokensOnTheRoad, AreUsedWhereTheyArriveInAnotherWay)
{
    const EmulatorProcess emulator;
    const QueueTill till(emulator.url());
    for (const FaultRow& row : tokenRows(true)) {
        SCOPED_TRACE(row.name);
        const QString id = QString::fromLatin1(row.name);
        ASSERT_EQ(till.add({id}).exitCode, 0);
        emulator.addFault(row.fault);
        EXPECT_TRUE(work(till)) << said.toStdString();
        expectRegistered(till, id);
        emulator.clearFaults();
    }
}

TEST_F(TokensOnTheRoad, ThatAreBackAreReported)
{
    const EmulatorProcess emulator;
    const QueueTill till(emulator.url());
    ASSERT_EQ(till.add({u"r1"_s, u"r2"_s}).exitCode, 0);
    emulator.addFault(R"("endpoint":"token","effect":"error","code":12,"match":{"next":1})");
    EXPECT_TRUE(work(till));
    EXPECT_THAT(said.toStdString(), HasSubstr("does not accept the login"));
    EXPECT_THAT(said.toStdString(), EndsWith("\nThe register works again.\n"));
    EXPECT_EQ(said.count(u'\n'), 2) << said.toStdString();
}

TEST_F(TokensOnTheRoad, ThatAreNoneAreNotUsed)
{
    const char* answer = nullptr;
    std::atomic<int> receipts = 0;
    const Service service([&](Service::Request& request) {
        receipts += request.call() == Service::Call::Sell ? 1 : 0;
        request.answer(200, answer);
    });
    const QueueTill till(service.url());
    ASSERT_EQ(till.add({u"r1"_s}).exitCode, 0);
    for (const char* each : answersWithoutToken) {
        SCOPED_TRACE(each);
        answer = each;
        expectInVain(till);
    }
    EXPECT_EQ(receipts, 0);
}

TEST_F(TokensOnTheRoad, AreNotWaitedForWithoutAnEndWhereNobodyListens)
{
    EmulatorProcess emulator;
    const QueueTill till(emulator.url());
    ASSERT_EQ(till.add({u"r1"_s}).exitCode, 0);
    emulator.stop();
    expectInVain(till);
    EXPECT_EQ(said.count(u": nobody accepts connections there."_s), 1) << "a trouble that lasts is said once";
}

} // namespace
