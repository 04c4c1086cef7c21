#pragma once

#include "till/receipts/receipt.h"
#include "till/wire/serviceanswer.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// What the service's answers about a receipt have to repeat.
struct ReceiptFacts
{
    QString id;
    /// In roubles.
    double total = 0;
};

/// What is wrong with the answer "done" as the proof that a receipt is registered.
struct Evidence
{
    /// Keys whose values are missing or not of their type.
    QStringList missing;
    /// The total that the service has registered, where that is another than the receipt's.
    std::optional<double> otherTotal;

    [[nodiscard]] bool isWhole() const { return missing.isEmpty() && !otherTotal; }
    /// Whether the answer is about this very document. Its payload is then about the receipt, too.
    [[nodiscard]] bool namesTheDocument() const;
};

/// Examines the answer "done" about the receipt. Whether its id and uuid are those of another document is
/// for judgeStatus() to say.
[[nodiscard]] Evidence evidenceIn(const ServiceAnswer& done, const ReceiptFacts& receipt);

/// The sentence that names what is wrong with the evidence; not for whole evidence.
[[nodiscard]] QString describe(const Evidence& evidence, const ReceiptFacts& receipt);

} // namespace till
