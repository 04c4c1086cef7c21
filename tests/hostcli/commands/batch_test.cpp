#include "hostcli/commands/batch.h"
#include "tests/support/qtprinters.h"
#include "tests/support/wire/rawserver.h"
#include "till/wire/observingtransport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <tuple>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;
using namespace till;

CommandLine commandLine(Command command)
{
    CommandLine line;
    line.command = command;
    line.json = true;
    return line;
}

QueuedReceipt receipt(const char* id)
{
    QueuedReceipt queued;
    queued.file = u"receipts"_s;
    queued.line = 1;
    queued.receipt.document.setInternalIdentifier(QString::fromLatin1(id));
    return queued;
}

ReceiptResult resultOf(const char* id, Outcome outcome)
{
    ReceiptResult result;
    result.id = QString::fromLatin1(id);
    result.outcome = outcome;
    return result;
}

ReceiptResult registered(const char* id)
{
    return resultOf(id, Outcome::Registered);
}

class RunOfABatch : public testing::Test
{
protected:
    RunOfABatch()
        : descriptor(memfd_create("output", MFD_CLOEXEC))
        , output(descriptor)
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
    }
    ~RunOfABatch() override { close(descriptor); }

    [[nodiscard]] QByteArray written() const
    {
        QByteArray all(4096, Qt::Uninitialized);
        all.truncate(pread(descriptor, all.data(), static_cast<std::size_t>(all.size()), 0));
        return all;
    }

    // Without a name, because a process that dies as expected would leave it.
    int descriptor;
    Output output;
    ObservingTransport transport;
};

constexpr auto accepted = R"({"uuid":"u","status":"wait"})";
constexpr auto known = R"({"uuid":"u","status":"wait","error":{"code":33,"type":"system"}})";
constexpr auto done = R"({"uuid":"u","external_id":"r1","status":"done","payload":{"total":0,
    "fn_number":"0251440300046840","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";
constexpr auto doneWithTotal5 = R"({"uuid":"u","external_id":"r1","status":"done","payload":{"total":5}})";
constexpr auto doneWithoutPayload = R"({"uuid":"u","external_id":"r1","status":"done"})";
constexpr auto failed = R"({"uuid":"u","external_id":"r1","status":"fail"})";

// A service that gives these answers to a receipt and to the question about it.
void registerReceipt(
    ObservingTransport& transport, const char* registration = accepted, const char* report = done)
{
    const RawServer service([&](Peer& peer, const std::string& request) {
        peer.answer(200, request.starts_with("POST") ? registration : report);
    });
    const QUrl url(QString::fromStdString(service.url()));
    EXPECT_TRUE(transport.post(url.resolved(QUrl(u"/v4/g/sell"_s)), "{}", {}));
    EXPECT_TRUE(transport.get(url.resolved(QUrl(u"/v4/g/report/u"_s)), {}, {}));
}

TEST_F(RunOfABatch, InterruptedBeforeAReceiptIsSentSaysSo)
{
    EXPECT_EXIT(
        {
            Batch batch(commandLine(Command::Sell), output, transport);
            batch.setCount(3);
            std::ignore = batch.begin(receipt("r1"));
            batch.interrupt();
        },
        testing::ExitedWithCode(4),
        "^Interrupted\\. r1 was not sent; run again\\.\nReceipts: 3\\. Registered: 0, refused: 0, unknown: "
        "0\\.\nReceipts not sent: 3\\.\n$");
}

TEST_F(RunOfABatch, InterruptedBetweenTwoReceiptsTellsHowManyAreDone)
{
    EXPECT_EXIT(
        {
            Batch batch(commandLine(Command::Sell), output, transport);
            batch.setCount(3);
            std::ignore = batch.begin(receipt("r1"));
            registerReceipt(transport);
            std::ignore = batch.finish(registered("r1"));
            batch.interrupt();
        },
        testing::ExitedWithCode(4),
        "^Interrupted\\.\nReceipts: 3\\. Registered: 1, refused: 0, unknown: 0\\.\nReceipts not sent: "
        "2\\.\n$");
}

TEST_F(RunOfABatch, DoesNotTakeWhatHappenedToAReceiptForTheFateOfTheNext)
{
    EXPECT_EXIT(
        {
            Batch batch(commandLine(Command::Sell), output, transport);
            batch.setCount(1);
            std::ignore = batch.begin(receipt("r1"));
            registerReceipt(transport);
            std::ignore = batch.finish(registered("r1"));
            std::ignore = batch.begin(receipt("r2"));
            batch.interrupt();
        },
        testing::ExitedWithCode(4), "^Interrupted\\. r2 was not sent");
}

TEST_F(RunOfABatch, InterruptedWhenTheServiceHasRegisteredTheReceiptWritesItsResult)
{
    Batch batch(commandLine(Command::Sell), output, transport);
    batch.setCount(2);
    std::ignore = batch.begin(receipt("r1"));
    registerReceipt(transport);
    testing::internal::CaptureStderr();
    batch.interrupt();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Interrupted. r1 is registered.\n");
    EXPECT_FALSE(batch.finish(registered("r1"))) << "no further receipt is taken up";
    EXPECT_EQ(batch.end(), ExitCode::Unknown);
    EXPECT_EQ(written(),
        QByteArray(R"({"id":"r1","line":0,"next":"none","outcome":"registered","sent":false})"
                   "\n"
                   R"({"summary":{"exitStatus":4,"incomplete":0,"notSent":1,"receipts":2,"refused":0,)"
                   R"("registered":1,"unknown":0}})"
                   "\n"));
}

TEST_F(RunOfABatch, InterruptedAfterTheLastAnswerSaysWhatItSays)
{
    struct Row
    {
        const char* registration;
        const char* report;
        const char* sentence;
    };
    constexpr auto unproven =
        "r1 is registered according to the service, which has not proved it; run again.";
    const Row rows[] = {
        {accepted, done, "r1 is registered."},
        {known, done, "r1 is registered."},
        {accepted, doneWithoutPayload, unproven},
        {known, doneWithoutPayload, unproven},
        {accepted, doneWithTotal5, unproven},
        {known, doneWithTotal5, "r1 was refused."},
    };
    for (const Row& row : rows) {
        Batch batch(commandLine(Command::Sell), output, transport);
        batch.setCount(1);
        std::ignore = batch.begin(receipt("r1"));
        registerReceipt(transport, row.registration, row.report);
        testing::internal::CaptureStderr();
        batch.interrupt();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Interrupted. " + std::string(row.sentence) + "\n");
    }
}

// Only the service can be asked about a receipt by running it again.
TEST(SentenceOfAnOutcome, AdvisesARepetitionOnlyWhereItHelps)
{
    struct Row
    {
        Outcome outcome;
        Witness witness;
        NextStep next;
        const char* sentence;
    };
    const Row rows[] = {
        {Outcome::Incomplete, Witness::Service, NextStep::Rerun,
            "r1 is registered according to the service, which has not proved it; run again."},
        {Outcome::Incomplete, Witness::Driver, NextStep::None,
            "r1 is registered according to the driver, which has not proved it; look at the register's last "
            "documents."},
        {Outcome::Unknown, Witness::Service, NextStep::Rerun, "The outcome of r1 is unknown; run again."},
        {Outcome::Unknown, Witness::Driver, NextStep::None,
            "The outcome of r1 is unknown; look at the register's last documents."},
        {Outcome::Unknown, Witness::Driver, NextStep::Rerun, "The outcome of r1 is unknown; run again."},
    };
    for (const Row& row : rows) {
        ReceiptResult result = resultOf("r1", row.outcome);
        result.witness = row.witness;
        result.next = row.next;
        EXPECT_EQ(outcomeSentence(result), QString::fromLatin1(row.sentence));
    }
}

TEST_F(RunOfABatch, InterruptedAfterAFailureThatIsNotConfirmedSaysThatTheOutcomeIsUnknown)
{
    for (const char* registration : {accepted, known}) {
        EXPECT_EXIT(
            {
                Batch batch(commandLine(Command::Sell), output, transport);
                batch.setCount(1);
                std::ignore = batch.begin(receipt("r1"));
                registerReceipt(transport, registration, failed);
                batch.interrupt();
            },
            testing::ExitedWithCode(4), "^Interrupted\\. r1 was sent, its outcome is unknown;");
    }
}

TEST_F(RunOfABatch, EndsEarlyWhereNoFurtherReceiptCouldBeRegistered)
{
    Batch batch(commandLine(Command::Sell), output, transport);
    batch.setCount(3);
    std::ignore = batch.begin(receipt("r1"));
    ReceiptResult refused = resultOf("r1", Outcome::Refused);
    refused.endsRun = true;
    EXPECT_FALSE(batch.finish(refused));
    testing::internal::CaptureStderr();
    EXPECT_EQ(batch.end(), ExitCode::Refused);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Receipts: 3. Registered: 0, refused: 1, unknown: 0.\nReceipts not sent: 2.\n");
}

TEST_F(RunOfABatch, WritesCauseAndAdviceAsSentences)
{
    struct Row
    {
        std::optional<ErrorInfo> error;
        const char* line;
    };
    const Row rows[] = {
        {ErrorInfo{{}, {}, u"Not valid"_s}, "r: Not valid. Correct it.\n"},
        {ErrorInfo{{}, {}, u"Not valid."_s}, "r: Not valid. Correct it.\n"},
        {ErrorInfo{{}, {}, u"Not valid. "_s}, "r: Not valid. Correct it.\n"},
        {ErrorInfo{{}, {}, u"Why?"_s}, "r: Why? Correct it.\n"},
        {ErrorInfo{{}, {}, u""_s}, "r: Correct it.\n"},
        {ErrorInfo{{}, {}, u" "_s}, "r: Correct it.\n"},
        {std::nullopt, "r: Correct it.\n"},
    };
    for (const Row& row : rows) {
        Batch batch(commandLine(Command::Sell), output, transport);
        batch.setCount(1);
        std::ignore = batch.begin(receipt("r"));
        ReceiptResult result = resultOf("r", Outcome::Refused);
        result.error = row.error;
        result.advice = u"Correct it."_s;
        testing::internal::CaptureStderr();
        std::ignore = batch.finish(result);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.line);
    }
}

TEST_F(RunOfABatch, InterruptedWhenTheServiceHasAcceptedTheReceiptWritesItsIdentifier)
{
    Batch batch(commandLine(Command::Send), output, transport);
    batch.setCount(1);
    std::ignore = batch.begin(receipt("r1"));
    registerReceipt(transport);
    testing::internal::CaptureStderr();
    batch.interrupt();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Interrupted. r1 was accepted by the service.\n");
}

TEST_F(RunOfABatch, EndsWithTheHighestStatusAndOnlyAnUnknownOutcomeStopsIt)
{
    struct Row
    {
        std::vector<Outcome> outcomes;
        ExitCode status;
        bool goesOn;
    };
    using enum Outcome;
    const Row rows[] = {
        {{Registered}, ExitCode::Success, true},
        {{Refused, Registered}, ExitCode::Refused, true},
        {{Incomplete, Registered}, ExitCode::IncompleteEvidence, true},
        {{Refused, Incomplete, Refused}, ExitCode::IncompleteEvidence, true},
        {{Refused, Unknown}, ExitCode::Unknown, false},
        {{Incomplete, Unknown}, ExitCode::IncompleteEvidence, false},
    };
    for (const Row& row : rows) {
        Batch batch(commandLine(Command::Sell), output, transport);
        batch.setCount(static_cast<int>(row.outcomes.size()));
        bool goesOn = true;
        for (const Outcome outcome : row.outcomes) {
            EXPECT_TRUE(goesOn);
            std::ignore = batch.begin(receipt("r"));
            goesOn = batch.finish(resultOf("r", outcome));
        }
        EXPECT_EQ(goesOn, row.goesOn);
        EXPECT_EQ(batch.end(), row.status);
    }
}

TEST_F(RunOfABatch, CountsReceiptsWithIncompleteEvidenceApart)
{
    Batch batch(commandLine(Command::Sell), output, transport);
    batch.setCount(3);
    for (const Outcome outcome : {Outcome::Registered, Outcome::Incomplete}) {
        std::ignore = batch.begin(receipt("r"));
        std::ignore = batch.finish(resultOf("r", outcome));
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(batch.end(), ExitCode::IncompleteEvidence);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Receipts: 3. Registered: 1, refused: 0, unknown: 0.\nRegistered, evidence incomplete: 1.\n"
        "Receipts not sent: 1.\n");
}

TEST_F(RunOfABatch, InterruptedAfterIncompleteEvidenceKeepsTheHigherStatus)
{
    EXPECT_EXIT(
        {
            Batch batch(commandLine(Command::Sell), output, transport);
            batch.setCount(2);
            std::ignore = batch.begin(receipt("r1"));
            std::ignore = batch.finish(resultOf("r1", Outcome::Incomplete));
            batch.interrupt();
        },
        testing::ExitedWithCode(5), "^Interrupted\\.\n");
}

TEST_F(RunOfABatch, TellsInJsonWhyItStoppedAndWhatItDidNotReach)
{
    Batch batch(commandLine(Command::Send), output, transport);
    batch.setCount(2);
    std::ignore = batch.begin(receipt("r1"));
    ReceiptResult sent = registered("r1");
    sent.sent = true;
    std::ignore = batch.finish(sent);
    batch.stop(Error(Problem::Setup, u"the journal"_s));
    EXPECT_TRUE(batch.skip(receipt("r2")));
    EXPECT_EQ(batch.end(), ExitCode::LocalFailure);
    EXPECT_EQ(written(),
        QByteArray(R"({"id":"r1","line":0,"next":"none","outcome":"registered","sent":true})"
                   "\n"
                   R"({"failure":{"message":"the journal"},"next":"account","sent":true})"
                   "\n"
                   R"({"error":{"message":"Not sent: the run ended before it"},"file":"receipts","id":"r2",)"
                   R"("line":1,"next":"account","outcome":"unknown","sent":false})"
                   "\n"
                   R"({"summary":{"accepted":1,"exitStatus":1,"incomplete":0,"notSent":1,"receipts":2,)"
                   R"("refused":0,"unknown":0}})"
                   "\n"));
}

TEST_F(RunOfABatch, SaysWhereThereIsNoPictureForWantOfATime)
{
    const QTemporaryDir folder;
    CommandLine line = commandLine(Command::Sell);
    line.qrDir = folder.path();
    Batch batch(line, output, transport);
    batch.setCount(1);
    std::ignore = batch.begin(receipt("r1"));
    ReceiptResult untimed = registered("r1");
    untimed.fiscal = FiscalInfo();
    testing::internal::CaptureStderr();
    std::ignore = batch.finish(untimed);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "r1: there is no picture of the QR code, because the "
                                                      "service's answer has no valid time. The receipt is "
                                                      "registered.\n");
    EXPECT_EQ(batch.end(), ExitCode::LocalFailure);
}

TEST_F(RunOfABatch, IsNotInterruptedAfterItsEnd)
{
    Batch batch(commandLine(Command::Sell), output, transport);
    batch.setCount(1);
    std::ignore = batch.begin(receipt("r1"));
    EXPECT_TRUE(batch.finish(registered("r1")));
    EXPECT_EQ(batch.end(), ExitCode::Success);
    testing::internal::CaptureStderr();
    batch.interrupt();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
