#pragma once

#include "queue/store/store.h"

#include <QStringList>

namespace queue {

/// What the store proves about the register's receipts.
struct Audit
{
    int accepted = 0;
    int registered = 0;
    /// Refused, failed or cancelled.
    int refused = 0;
    /// Not finished, held ones included.
    int underWay = 0;
    /// Finished without what must be there of it, or with a history and no receipt.
    int lost = 0;
    /// Registered with the document of another receipt. A sale that was handed over under two ids has two
    /// documents and is not seen.
    int doubled = 0;
    /// Registered by an attempt whose answer did not arrive.
    int recovered = 0;
    /// What is wrong, one text for each receipt, and for the file.
    QStringList findings;

    [[nodiscard]] bool isGood() const { return findings.isEmpty(); }
};

/// Reads the whole file.
[[nodiscard]] Audit auditOf(Store& store);

/// Removes receipts that finished longer ago than this, with their history; returns how many.
int prune(Store& store, std::chrono::milliseconds age);

} // namespace queue
