#pragma once

#include "host/records/fiscalinfo.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace till {

/// The fiscal data that the service hands out with a finished document.
struct FiscalPayload
{
    FiscalInfo info;
    /// Link to the receipt at the fiscal data operator; empty when the service gave none.
    QString receiptUrl;
};

/// Reads the payload of a status answer. What is missing, not of its type or out of its range stays empty, a
/// number 0 and the total NaN. `taxSystem` is the receipt's tag 1055: the service does not repeat it.
[[nodiscard]] FiscalPayload readPayload(const QVariantMap& payload, std::optional<int> taxSystem);

/// The keys of the values that prove a registration (total, number of the document, storage and sign) and are
/// missing, not of their type or out of their range.
[[nodiscard]] QStringList missingProof(const QVariantMap& payload);

/// The total in the payload of a status answer, in roubles; none when it is missing or not a number.
[[nodiscard]] std::optional<double> totalIn(const QVariantMap& payload);

/// The text of the receipt's QR code; empty unless all of it is known.
[[nodiscard]] QString qrText(const FiscalInfo& info);

} // namespace till
