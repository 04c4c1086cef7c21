#pragma once

#include "queue/store/store.h"
#include "till/sale/result.h"

namespace frhost {

/// The result in a line of JSON that toJsonLine() has written. The verdict and the advice are not in it.
[[nodiscard]] till::ReceiptResult resultIn(const QJsonObject& line);

/// What became of a receipt that no worker will take any more, or not before a person has decided; with what
/// to do.
[[nodiscard]] till::ReceiptResult conclusionOf(queue::Store& store, const queue::Entry& entry);

} // namespace frhost
