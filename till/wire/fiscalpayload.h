#pragma once

#include "host/records/fiscalinfo.h"

#include <QJsonObject>
#include <QString>

namespace frhost {

/// The fiscal data in a whole status answer of the service, for answers that the driver did not take into its
/// own record. `taxSystem` is the receipt's tag 1055, 0 for none.
[[nodiscard]] FiscalInfo fiscalInfo(const QJsonObject& answer, int taxSystem);

/// The link to the receipt in a status answer; empty when there is none.
[[nodiscard]] QString receiptUrl(const QJsonObject& answer);

/// The text of the receipt's QR code; empty when the fiscal data is incomplete.
[[nodiscard]] QString qrText(const FiscalInfo& info);

} // namespace frhost
