#pragma once

#include "host/records/fiscalinfo.h"

#include <QString>
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

/// Reads the payload of a status answer; what is missing stays empty. `taxSystem` is the receipt's tag 1055:
/// the service does not repeat it.
[[nodiscard]] FiscalPayload readPayload(const QVariantMap& payload, std::optional<int> taxSystem);

/// The total in the payload of a status answer, in roubles; none when it is missing or not a number.
[[nodiscard]] std::optional<double> totalIn(const QVariantMap& payload);

/// The text of the receipt's QR code; empty when the fiscal data is incomplete.
[[nodiscard]] QString qrText(const FiscalInfo& info);

} // namespace till
