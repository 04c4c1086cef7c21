#pragma once

#include "till/receipts/receiptparser.h"

#include <QJsonObject>

#include <vector>

namespace till {

/// Where a receipt that has passed the schema goes beyond what the service is known to accept. The service
/// may change these limits, so they are warnings unless the user wants them to be errors.
[[nodiscard]] std::vector<ReceiptProblem> beyondServiceLimits(const QJsonObject& receipt);

} // namespace till
