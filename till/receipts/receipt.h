#pragma once

#include "host/records/fdrequisite.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"

#include <QJsonObject>
#include <QList>

#include <optional>

namespace till {

/// The tag under which a receipt has the buyer's contact.
inline constexpr int buyerContact = 1008;

/// A sum as messages show it.
[[nodiscard]] QString roubles(double sum);

/// Whether two sums are equal but for less than half a kopeck; a sum that is not a number is equal to none.
[[nodiscard]] bool isTheSameSum(double one, double other);

/// A receipt in the host's records.
struct Receipt
{
    FiscalDocument document;
    QList<FdRequisite> requisites;
    QList<FrPosition> positions;
    QList<FrPayment> payments;

    /// By which the service knows a repeated receipt.
    [[nodiscard]] QString id() const { return document.getInternalIdentifier(); }
    /// What is paid, in roubles.
    [[nodiscard]] double total() const;
    /// The taxation system (tag 1055); none when the receipt names none.
    [[nodiscard]] std::optional<int> taxSystem() const;
};

/// Converts a receipt that has passed the schema.
[[nodiscard]] Receipt toReceipt(const QJsonObject& json);

} // namespace till
