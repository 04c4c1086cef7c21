#pragma once

#include "till/receipts/receipt.h"
#include "till/receipts/receiptfile.h"
#include "till/receipts/receiptparser.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

namespace till {

/// A receipt and its place in the input.
struct QueuedReceipt
{
    QString file;
    int line = 0;
    Receipt receipt;
    /// As it was checked.
    QJsonObject json = {};
};

/// What to do about receipts that go beyond the limits of the service.
struct LimitChecks
{
    /// They are errors.
    bool areErrors = false;
    /// Otherwise called for each, at most ten in a run; may be empty.
    std::function<void(const QString& warning)> warn = {};
};

/// The receipts of a run, from any number of files. They are read twice: first all are checked, then they are
/// handed out one at a time, each compared with the digest of what was checked. Memory grows by a few dozen
/// bytes a receipt.
class ReceiptQueue
{
public:
    /// Reads and checks all receipts. Throws Error whose message names file, line, JSON
    /// pointer and rule of each wrong one (the first ten), and of each id that occurs twice.
    explicit ReceiptQueue(const QStringList& fileNames, LimitChecks limitChecks = {});

    [[nodiscard]] int count() const { return receiptCount; }

    /// Hands the receipts out in their order until `handle` returns false. Throws Error where a file differs
    /// from what was checked: nothing unchecked is ever handed out.
    void forEach(const std::function<bool(const QueuedReceipt&)>& handle);

private:
    using Digest = std::array<char, 16>;

    struct CheckedFile
    {
        ReceiptFile file;
        /// Of the texts of its receipts, in their order.
        std::vector<Digest> receipts;
    };

    [[nodiscard]] static Digest digestOf(const QByteArray& text);
    [[nodiscard]] static bool readAgain(CheckedFile& checked, RawReceipt& raw);
    [[nodiscard]] QString checkAll();
    void checkLimits(const QString& file, const RawReceipt& raw, const QJsonObject& receipt,
        const std::function<void(const QString&)>& addError);
    [[nodiscard]] QJsonObject readChecked(CheckedFile& checked, const Digest& digest, RawReceipt& raw) const;

    ReceiptParser parser;
    std::vector<CheckedFile> files;
    int receiptCount = 0;
    LimitChecks checks;
    int warningCount = 0;
};

} // namespace till
