#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"
#include "hostcli/terminal/qrpictures.h"
#include "till/receipts/receiptqueue.h"
#include "till/sale/receiptresult.h"

#include <mutex>
#include <optional>

namespace frhost {

class ObservingTransport;

/// The course of one run of `sell` or `send`: reports each result as soon as it is known, counts, and can
/// tell at any moment what is known.
class Batch
{
public:
    /// Output and transport are borrowed.
    Batch(const CommandLine& line, Output& output, ObservingTransport& transport);

    /// All receipts have been checked; there are so many.
    void setCount(int receipts);

    /// A receipt is taken up. What is shown of it while it is worked on is returned.
    [[nodiscard]] QString begin(const QueuedReceipt& queued);
    /// Its result is known: writes it. Returns whether the run goes on.
    [[nodiscard]] bool finish(const ReceiptResult& result);
    /// Writes the summary; the exit status of the run.
    [[nodiscard]] ExitCode end();

    /// Called from another thread, once: says what is known and ends the program. Where a result is known
    /// and not yet written, it only lets the run end after that.
    void interrupt();

private:
    struct Tally
    {
        int good = 0;
        int refused = 0;
        int unknown = 0;

        [[nodiscard]] int done() const { return good + refused + unknown; }
        void add(const ReceiptResult& result);
    };

    [[nodiscard]] bool isSell() const { return command == Command::Sell; }
    [[nodiscard]] bool isRegistered() const;
    void write(const ReceiptResult& result);
    void writePicture(const ReceiptResult& result);
    void summarize() const;
    void sayInterrupted() const;
    void giveUpReceipt();

    const Command command;
    const bool json;
    const QrPictures pictures;
    Output& output;
    ObservingTransport& transport;

    // Held while the state below changes, and for good once an interruption ends the program.
    std::mutex guard;
    int count = 0;
    Tally tally;
    // The receipt under way; it has an outcome or a uuid from the moment that its result is known.
    std::optional<ReceiptResult> current;
    bool isKnown = false;
    bool isInterrupted = false;
    bool hasEnded = false;
    bool pictureFailed = false;
};

} // namespace frhost
