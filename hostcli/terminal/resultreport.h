#pragma once

#include "till/sale/receiptresult.h"

#include <QByteArray>
#include <QString>

namespace frhost {

/// "registered", "refused" or "unknown".
[[nodiscard]] QString outcomeName(Outcome outcome);

/// The result as one line of JSON; absent parts are left out.
[[nodiscard]] QByteArray toJsonLine(const ReceiptResult& result);

/// The result as a short table.
[[nodiscard]] QString toText(const ReceiptResult& result);

} // namespace frhost
