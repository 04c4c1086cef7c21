#pragma once

#include "till/sale/failure.h"
#include "till/sale/result.h"

#include <QByteArray>
#include <QString>

namespace frhost {

/// "registered", "incomplete", "refused" or "unknown".
[[nodiscard]] QString outcomeName(till::Outcome outcome);

/// What to call the receipt: its id, its document's uuid where the id is not known, or its place in the
/// input.
[[nodiscard]] QString nameOf(const till::ReceiptResult& result);

/// The result as one line of JSON; absent parts are left out.
[[nodiscard]] QByteArray toJsonLine(const till::ReceiptResult& result);

/// The failure of a run as one line of JSON.
[[nodiscard]] QByteArray toJsonLine(const till::RunFailure& failure);

/// The result as a short table, its outcome in colour or not.
[[nodiscard]] QString toText(const till::ReceiptResult& result, bool inColour = false);

} // namespace frhost
