#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const QStringList outcome{u"id"_s, u"outcome"_s};

constexpr auto sent =
    "Interrupted. r1 was sent, its outcome is unknown; run again: the service does not register an id "
    "twice.\n";

bool hasCalls(const EmulatorProcess& emulator, const QString& calls)
{
    return comesTrue([&] { return emulator.calls().startsWith(calls); });
}

// A named pipe that is full until it is read.
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

    [[nodiscard]] QString path() const { return folder.filePath(u"pipe"_s); }
    // What is in it now.
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
        return shop.arguments({u"sell"_s, shop.receipts(ids)});
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

const auto names = [](const auto& of) {
    return of.param == SIGINT ? "ByCtrlC" : of.param == SIGTERM ? "BySigTerm" : "ByHangup";
};

INSTANTIATE_TEST_SUITE_P(Is, Interruption, testing::Values(SIGINT, SIGTERM, SIGHUP), names);

TEST_P(Interruption, OfAnUnansweredSaleSaysThatItWasSent)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent","phase":"after")");
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
    EXPECT_EQ(ran.columns(outcome), QStringList{u"r1 unknown"_s});

    emulator.clearFaults();
    const Ran again = run(frhostProgram(), selling({u"r1"_s}));
    EXPECT_EQ(again.columns({u"outcome"_s, u"recovered"_s}), QStringList{u"registered true"_s});
}

TEST_P(Interruption, OfAReceiptThatIsNeverDoneReportsItsUuid)
{
    emulator.addFault(R"("endpoint":"sell","effect":"never")");
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell report report"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), EndsWith(sent));
    EXPECT_EQ(ran.columns(outcome), QStringList{u"r1 unknown"_s});
    EXPECT_FALSE(ran.lines().value(0).value(u"uuid"_s).toString().isEmpty());
}

TEST_P(Interruption, CutsThePauseBetweenTwoStatusRequestsShort)
{
    shop.configure(u"requestInterval"_s, u"600000"_s);
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, CutsThePauseBeforeAFurtherTokenShort)
{
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":11)");
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell token sell token sell token sell"_s));
    QElapsedTimer timer;
    timer.start();
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), EndsWith(sent));
    EXPECT_LT(timer.elapsed(), 3000) << "the pause would take four seconds";
}

TEST_P(Interruption, WhileAFailureIsConfirmedSaysThatTheOutcomeIsUnknown)
{
    emulator.addFault(R"("endpoint":"report","effect":"fail")");
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell report report"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), EndsWith(sent));
    EXPECT_EQ(ran.columns(outcome), QStringList{u"r1 unknown"_s});
}

TEST_P(Interruption, BeforeTheTokenSaysThatNothingWasSent)
{
    emulator.addFault(R"("endpoint":"token","effect":"silent")");
    Running frhost(frhostProgram(), selling({u"r1"_s, u"r2"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), StartsWith("Interrupted. Nothing was sent.\n"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts not sent: 2.\n"));
    EXPECT_TRUE(ran.lines().isEmpty());
    EXPECT_EQ(ran.lineWith(u"summary"_s).value(u"summary"_s)[u"notSent"].toInt(), 2);
}

TEST_P(Interruption, WhileTheConfigurationIsReadSaysThatNothingWasSent)
{
    const QTemporaryDir folder;
    const QString config = folder.filePath(u"register.ini"_s);
    ASSERT_EQ(mkfifo(config.toLocal8Bit().constData(), 0600), 0);
    Running frhost(frhostProgram(), {u"--config"_s, config, u"sell"_s, shop.receipts({u"r1"_s})});
    const int writer = open(config.toLocal8Bit().constData(), O_WRONLY | O_CLOEXEC);
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    close(writer);
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), "Interrupted. Nothing was sent.\n");
}

// Wherever the program is after its last line.
TEST_P(Interruption, AfterTheLastLineLeavesTheStatusOfTheRun)
{
    for (int delay = 0; delay < 10; ++delay) {
        const QString id = u"r%1"_s.arg(delay);
        Running frhost(frhostProgram(), shop.arguments({u"sell"_s, shop.receipts({id})}));
        ASSERT_THAT(frhost.moreOutput().toStdString(), EndsWith("}\n"));
        usleep(static_cast<useconds_t>(delay * 200));
        frhost.signal(GetParam());
        const Ran ran = frhost.end();
        if (ran.exitCode == 4)
            EXPECT_EQ(ran.err, u"Interrupted. %1 is registered.\n"_s.arg(id));
        else
            EXPECT_EQ(ran.exitCode, 0) << ran.err.toStdString();
    }
}

TEST_P(Interruption, OfABatchReportsHowManyAreDone)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent","match":{"external_id":"r2"})");
    Running frhost(frhostProgram(), selling({u"r1"_s, u"r2"_s, u"r3"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell report sell"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.columns(outcome), (QStringList{u"r1 registered"_s, u"r2 unknown"_s}));
    EXPECT_EQ(ran.err.toStdString(),
        "Interrupted. r2 was sent, its outcome is unknown; run again: the service does not register an id "
        "twice.\n"
        "Receipts: 3. Registered: 1, refused: 0, unknown: 1.\nReceipts not sent: 1.\n");
}

TEST_P(Interruption, AfterAResultKeepsItAndSendsNoFurtherReceipt)
{
    const StuckPipe pipe;
    Running frhost(frhostProgram(), selling({u"r1"_s, u"r2"_s}), pipe.path());
    ASSERT_TRUE(hasCalls(emulator, u"token sell report"_s));
    frhost.signal(GetParam());
    // The answer may still be on its way; the message about the receipt is then cautious, and true.
    ASSERT_TRUE(frhost.hasSaid("Interrupted. r1 "));
    QByteArray out;
    ASSERT_TRUE(comesTrue([&] { return (out += pipe.readAll()).contains("}\n"); }));
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts not sent: 1.\n"));
    EXPECT_THAT(out.toStdString(), HasSubstr(R"("id":"r1")"));
    EXPECT_EQ(emulator.calls(), u"token sell report"_s);
}

TEST_P(Interruption, ASecondTimeEndsTheProgramEvenIfItsOutputIsStuck)
{
    const StuckPipe pipe;
    Running frhost(frhostProgram(), selling({u"r1"_s}), pipe.path());
    ASSERT_TRUE(hasCalls(emulator, u"token sell report"_s));
    frhost.signal(GetParam());
    ASSERT_TRUE(frhost.hasSaid("Interrupted. r1 "));
    // Signals that arrive too soon count as one with the first.
    EXPECT_TRUE(comesTrue([&] {
        frhost.signal(GetParam());
        return frhost.hasEndedWithin(std::chrono::milliseconds(50));
    }));
    EXPECT_EQ(frhost.end().exitCode, 128 + GetParam());
}

TEST_P(Interruption, BySeveralSignalsAtOnceIsOneInterruption)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent")");
    Running frhost(frhostProgram(), selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell"_s));
    for (int i = 0; i < 3; ++i)
        frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, OfACommandThatOnlyAsksSaysNothingElse)
{
    emulator.addFault(R"("endpoint":"report","effect":"silent")");
    Running info(frhostProgram(), shop.arguments({u"info"_s, u"u"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token report"_s));
    info.signal(GetParam());
    const Ran asked = info.end();
    EXPECT_EQ(asked.exitCode, 4);
    EXPECT_EQ(asked.err, u"Interrupted.\n"_s);

    emulator.addFault(R"("endpoint":"token","effect":"silent")");
    Running check(frhostProgram(), shop.arguments({u"check"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token report token"_s));
    check.signal(GetParam());
    const Ran checked = check.end();
    EXPECT_EQ(checked.exitCode, 4);
    EXPECT_EQ(checked.err, u"Interrupted.\n"_s);
}

TEST_P(Interruption, OfSendingSaysThatTheReceiptWasSent)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent")");
    Running frhost(frhostProgram(), shop.arguments({u"send"_s, shop.receipts({u"r1"_s})}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 4);
    EXPECT_EQ(ran.err.toStdString(), sent);
}

TEST_P(Interruption, OfACommandThatStaysOfflineEndsItAsUsual)
{
    Running frhost(frhostProgram(), {u"compose"_s, u"-"_s});
    frhost.signal(GetParam());
    EXPECT_EQ(frhost.end().exitCode, 128 + GetParam());
}

TEST_P(Interruption, IsIgnoredIfTheCallerIgnoresTheSignal)
{
    emulator.addFault(R"("endpoint":"sell","effect":"delay","milliseconds":500)");
    const QString trap = u"trap '' %1; exec \"$0\" \"$@\""_s.arg(GetParam());
    Running frhost(u"sh"_s, QStringList{u"-c"_s, trap, frhostProgram()} + selling({u"r1"_s}));
    ASSERT_TRUE(hasCalls(emulator, u"token sell"_s));
    frhost.signal(GetParam());
    const Ran ran = frhost.end();
    EXPECT_EQ(ran.exitCode, 0) << ran.err.toStdString();
    EXPECT_EQ(ran.columns(outcome), QStringList{u"r1 registered"_s});
}

} // namespace
