#pragma once

#include "bench/support/sale.h"

#include <QByteArray>
#include <QJsonObject>

namespace bench {

/// A sale's request in the best way found of writing it with QJsonObject.
[[nodiscard]] QJsonObject qjsonSale(const Sale& sale);
/// The same as compact text.
[[nodiscard]] QByteArray qjsonText(const Sale& sale);

} // namespace bench
