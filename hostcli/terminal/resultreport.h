#pragma once

#include "till/sale/result.h"

#include <QByteArray>
#include <QString>

namespace frhost {

/// "registered", "incomplete", "refused" or "unknown".
[[nodiscard]] QString outcomeName(till::Outcome outcome);

/// The result as one line of JSON; absent parts are left out.
[[nodiscard]] QByteArray toJsonLine(const till::ReceiptResult& result);

/// The result as a short table.
[[nodiscard]] QString toText(const till::ReceiptResult& result);

} // namespace frhost
