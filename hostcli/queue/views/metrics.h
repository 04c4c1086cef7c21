#pragma once

#include "queue/store/views.h"

#include <QByteArray>

namespace frhost {

/// The overview of a register as OpenMetrics text.
[[nodiscard]] QByteArray openMetrics(const queue::Overview& overview, const QString& address);

} // namespace frhost
