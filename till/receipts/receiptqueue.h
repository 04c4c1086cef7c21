#pragma once

#include "till/receipts/receipt.h"
#include "till/receipts/receiptfile.h"
#include "till/receipts/receiptparser.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace till {

/// A receipt and its place in the input.
struct QueuedReceipt
{
    QString file;
    int line = 0;
    Receipt receipt;
};

/// The receipts of a run, from any number of files. They are read twice: first all are checked and
/// forgotten, then they are handed out one at a time, so memory grows by a few dozen bytes a receipt, and
/// only while they are checked.
class ReceiptQueue
{
public:
    /// Reads and checks all receipts. Throws Error whose message names file, line, JSON
    /// pointer and rule of each wrong one (the first ten), and of each id that occurs twice.
    explicit ReceiptQueue(const QStringList& fileNames);

    [[nodiscard]] int count() const { return receiptCount; }

    /// Hands the receipts out in their order until `handle` returns false. Throws Error when a file
    /// has changed since it was checked.
    void forEach(const std::function<bool(const QueuedReceipt&)>& handle);

private:
    [[nodiscard]] QString checkAll();
    [[nodiscard]] std::optional<QJsonObject> readAgain(ReceiptFile& file, RawReceipt& raw) const;

    ReceiptParser parser;
    std::vector<std::unique_ptr<ReceiptFile>> files;
    int receiptCount = 0;
};

} // namespace till
