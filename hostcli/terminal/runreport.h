#pragma once

#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"
#include "till/sale/result.h"

namespace frhost {

/// How many receipts of a run have which outcome.
struct Tally
{
    /// Registered or, where that is not waited for, accepted.
    int good = 0;
    int incomplete = 0;
    int refused = 0;
    int unknown = 0;

    [[nodiscard]] int done() const { return good + incomplete + refused + unknown; }
    void add(std::optional<till::Outcome> outcome);
};

/// The exit status for the outcome of a receipt.
[[nodiscard]] ExitCode exitCodeOf(std::optional<till::Outcome> outcome);

/// Writes a result, and to the console what to do.
void report(const till::ReceiptResult& result, bool json, Output& output);
/// The same with the result written as this text.
void reportAs(const QByteArray& text, const till::ReceiptResult& result, Output& output);

/// Tells the console how many of so many receipts have which outcome; says nothing of a single good one.
void reportTotals(const Tally& tally, bool isWaitedFor, int receipts);

/// The summary of a run of so many receipts as one line of JSON; `good` is the key for the good ones.
[[nodiscard]] QByteArray toJsonLine(const Tally& tally, const QString& good, int receipts, ExitCode status);

} // namespace frhost
