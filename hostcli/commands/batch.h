#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"
#include "hostcli/terminal/qrpictures.h"
#include "hostcli/terminal/runreport.h"
#include "till/receipts/receiptqueue.h"
#include "till/sale/result.h"

#include <mutex>

namespace till {
class ObservingTransport;
}

namespace frhost {

/// What is known of a receipt whose result is being reported.
[[nodiscard]] QString outcomeSentence(const till::ReceiptResult& result);

/// The course of one run of `sell` or `send`: reports each result as soon as it is known, counts, and can
/// tell at any moment what is known.
class Batch
{
public:
    /// Output and transport are borrowed.
    Batch(const CommandLine& line, Output& usedOutput, till::ObservingTransport& usedTransport);

    /// All receipts have been checked, `receipts` of them.
    void setCount(int receipts);
    /// One more receipt has arrived.
    void expectAnother();

    /// Work on a receipt begins. Returns the status line to show meanwhile.
    [[nodiscard]] QString begin(const till::QueuedReceipt& queued);
    /// An attempt at it did not settle its outcome, and another one follows.
    void noteAttempt(const till::ReceiptResult& result);
    /// Its result is known: writes it. Returns whether the run goes on.
    [[nodiscard]] bool finish(const till::ReceiptResult& result);
    /// The run cannot go on; what is left is not sent.
    void stop(const till::Error& error);
    /// A receipt that the run does not reach any more. Returns whether to tell of the next one, too.
    [[nodiscard]] bool skip(const till::QueuedReceipt& queued);
    /// How many receipts have a result.
    [[nodiscard]] int doneCount();
    /// Writes the summary; returns the exit status of the run.
    [[nodiscard]] ExitCode end();

    /// Called from another thread, once: says what is known and ends the program. Where a result is known
    /// and not yet written, it only lets the run end after that.
    void interrupt();

private:
    enum class Step
    {
        BetweenReceipts,
        /// The current receipt is being worked on.
        Working,
        /// Its result is known and being written.
        Reporting,
        Ended,
    };

    [[nodiscard]] bool isSell() const { return command == Command::Sell; }
    [[nodiscard]] till::SaleVerdict judged() const;
    [[nodiscard]] bool hasAnswer() const;
    [[nodiscard]] QString whatIsKnown() const;
    void raise(ExitCode to);
    void endBefore(till::NextStep next);
    void giveUpReceipt();
    void write(const till::ReceiptResult& result);
    void writePicture(const till::ReceiptResult& result);
    void summarize();

    const Command command;
    const bool json;
    const bool streams;
    const bool wantsPictures;
    const QrPictures pictures;
    Output& output;
    till::ObservingTransport& transport;

    // Held while the state below changes, and for good once an interruption ends the program.
    std::mutex guard;
    int count = 0;
    Tally tally;
    Step step = Step::BetweenReceipts;
    till::ReceiptResult current;
    till::ReceiptFacts facts;
    ExitCode status = ExitCode::Success;
    bool goesOn = true;
    till::NextStep nextOfRest = till::NextStep::Rerun;
    bool hasSent = false;
};

} // namespace frhost
