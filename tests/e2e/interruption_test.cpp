#include "tests/e2e/support/running.h"
#include "tests/e2e/support/shop.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const QStringList outcome{QStringLiteral("id"), QStringLiteral("outcome")};

constexpr auto sent =
    "Interrupted. r1 was sent, outcome unknown, run again: the service does not register an id "
    "twice.\n";

bool hasCalls(const EmulatorProcess& emulator, const QString& calls)
{
    return comesTrue([&] { return emulator.calls().startsWith(calls); });
}

// A named pipe that takes nothing more until it is read.
class StuckPipe
{
public:
    StuckPipe()
    {
        mkfifo(path().toLocal8Bit().constData(), 0600);
        end = open(path().toLocal8Bit().constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        const QByteArray filling(static_cast<qsizetype>(fcntl(end, F_SETPIPE_SZ, 4096)), '\n');
        if (write(end, filling.constData(), static_cast<std::size_t>(filling.size())) != filling.size())
            qFatal("the pipe is not full");
    }
    ~StuckPipe() { close(end); }
    Q_DISABLE_COPY_MOVE(StuckPipe)

    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("pipe")); }
    // What is there now.
    [[nodiscard]] QByteArray readAll() const
    {
        QByteArray all(64 * 1024, Qt::Uninitialized);
        all.truncate(std::max<ssize_t>(0, read(end, all.data(), static_cast<std::size_t>(all.size()))));
        return all;
    }

private:
    QTemporaryDir folder;
    int end = -1;
};

class Interruption : public testing::TestWithParam<int>
{
protected:
    [[nodiscard]] QStringList selling(const QStringList& ids) const
    {
        return shop.arguments({QStringLiteral("sell"), shop.receipts(ids)});
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

const auto names = [](const auto& of) { return of.param == SIGINT ? "ByCtrlC" : "BySigTerm"; };

INSTANTIATE_TEST_SUITE_P(Is, Interruption, testing::Values(SIGINT, SIGTERM), names);

TEST_P(Interruption, OfASaleThatIsNotAnsweredSaysThatItWasSent)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent","phase":"after")");
    Running frhost(frhostProgram(), selling({QStringLiteral("r1")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
    EXPECT_EQ(ran.columns(outcome), QStringList{QStringLiteral("r1 unknown")});

    emulator.clearFaults();
    const Ran again = run(frhostProgram(), selling({QStringLiteral("r1")}));
    EXPECT_EQ(again.columns({QStringLiteral("outcome"), QStringLiteral("recovered")}),
        QStringList{QStringLiteral("registered true")});
}

TEST_P(Interruption, OfAReceiptThatIsNeverDoneTellsItsIdentifier)
{
    emulator.addFault(R"("endpoint":"sell","effect":"never")");
    Running frhost(frhostProgram(), selling({QStringLiteral("r1")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell report report")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), EndsWith(sent));
    EXPECT_EQ(ran.columns(outcome), QStringList{QStringLiteral("r1 unknown")});
    EXPECT_FALSE(ran.lines().value(0).value(QStringLiteral("uuid")).toString().isEmpty());
}

TEST_P(Interruption, DoesNotWaitForThePauseBetweenTwoQuestions)
{
    shop.configure(QStringLiteral("requestInterval"), QStringLiteral("600000"));
    Running frhost(frhostProgram(), selling({QStringLiteral("r1")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, BeforeTheTokenSaysThatNothingWasSent)
{
    emulator.addFault(R"("endpoint":"token","effect":"silent")");
    Running frhost(frhostProgram(), selling({QStringLiteral("r1"), QStringLiteral("r2")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), StartsWith("Interrupted. Nothing was sent.\n"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts not sent: 2.\n"));
    EXPECT_EQ(ran.out, QString());
}

TEST_P(Interruption, OfABatchTellsHowManyAreDone)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent","match":{"external_id":"r2"})");
    Running frhost(
        frhostProgram(), selling({QStringLiteral("r1"), QStringLiteral("r2"), QStringLiteral("r3")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell report sell")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(
        ran.columns(outcome), (QStringList{QStringLiteral("r1 registered"), QStringLiteral("r2 unknown")}));
    EXPECT_EQ(ran.err.toStdString(),
        "Interrupted. r2 was sent, outcome unknown, run again: the service does not register an id twice.\n"
        "Receipts: 3. Registered: 1, refused: 0, unknown: 1.\nReceipts not sent: 1.\n");
}

TEST_P(Interruption, AfterAResultIsKnownLosesItNotAndSendsNoFurtherReceipt)
{
    const StuckPipe pipe;
    Running frhost(frhostProgram(), selling({QStringLiteral("r1"), QStringLiteral("r2")}), pipe.path());
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell report")));
    frhost.signal(GetParam());
    // The answer may still be on its way; what is said of the receipt then is cautious, and true.
    ASSERT_TRUE(frhost.hasSaid(QStringLiteral("Interrupted. r1 ")));
    QByteArray out;
    ASSERT_TRUE(comesTrue([&] { return (out += pipe.readAll()).contains("}\n"); }));
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts not sent: 1.\n"));
    EXPECT_THAT(out.toStdString(), HasSubstr(R"("id":"r1")"));
    EXPECT_EQ(emulator.calls(), QStringLiteral("token sell report"));
}

TEST_P(Interruption, ASecondTimeEndsTheProgramThoughItsOutputIsStuck)
{
    const StuckPipe pipe;
    Running frhost(frhostProgram(), selling({QStringLiteral("r1")}), pipe.path());
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell report")));
    frhost.signal(GetParam());
    ASSERT_TRUE(frhost.hasSaid(QStringLiteral("Interrupted. r1 ")));
    // Signals that come too soon count as one with the first.
    EXPECT_TRUE(comesTrue([&] {
        frhost.signal(GetParam());
        return frhost.hasEndedWithin(std::chrono::milliseconds(50));
    }));
    EXPECT_EQ(frhost.end().exitCode, 128 + GetParam());
}

TEST_P(Interruption, ByASignalSentTwiceAtOnceIsOneInterruption)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent")");
    Running frhost(frhostProgram(), selling({QStringLiteral("r1")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell")));
    for (int i = 0; i < 3; ++i)
        frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, OfACommandThatOnlyAsks)
{
    emulator.addFault(R"("endpoint":"report","effect":"silent")");
    Running info(frhostProgram(), shop.arguments({QStringLiteral("info"), QStringLiteral("u")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token report")));
    info.signal(GetParam());
    const Ran asked = info.end();
    EXPECT_EQ(asked.exitCode, 4);
    EXPECT_EQ(asked.err, QStringLiteral("Interrupted.\n"));

    emulator.addFault(R"("endpoint":"token","effect":"silent")");
    Running check(frhostProgram(), shop.arguments({QStringLiteral("check")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token report token")));
    check.signal(GetParam());
    const Ran checked = check.end();
    EXPECT_EQ(checked.exitCode, 4);
    EXPECT_EQ(checked.err, QStringLiteral("Interrupted.\n"));
}

TEST_P(Interruption, OfSendingSaysThatTheReceiptWasSent)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent")");
    Running frhost(
        frhostProgram(), shop.arguments({QStringLiteral("send"), shop.receipts({QStringLiteral("r1")})}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, OfACommandThatSendsNothingEndsItAsUsual)
{
    Running frhost(frhostProgram(), {QStringLiteral("compose"), QStringLiteral("-")});
    frhost.signal(GetParam());
    EXPECT_EQ(frhost.end().exitCode, 128 + GetParam());
}

TEST_P(Interruption, ThatTheCallerHasSwitchedOffStaysOff)
{
    emulator.addFault(R"("endpoint":"sell","effect":"delay","milliseconds":500)");
    const QString trap = QStringLiteral("trap '' %1; exec \"$0\" \"$@\"").arg(GetParam());
    Running frhost(QStringLiteral("sh"),
        QStringList{QStringLiteral("-c"), trap, frhostProgram()} + selling({QStringLiteral("r1")}));
    ASSERT_TRUE(hasCalls(emulator, QStringLiteral("token sell")));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 0) << ran.err.toStdString();
    EXPECT_EQ(ran.columns(outcome), QStringList{QStringLiteral("r1 registered")});
}

} // namespace
