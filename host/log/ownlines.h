#pragma once

#include "host/export.h"

#include <QAnyStringView>

namespace hostruntime {

/// Whether the drivers' line, as a format or as its complete text, says only what the host and the drivers
/// know: identifiers, sums, tags and names that the host has handed over, and fixed texts. Such a line is
/// logged as it is.
///
/// Any other line may hold the service's words, and they a secret that was sent to it: its text of an error,
/// but also its identifier of a document.
[[nodiscard]] HOST_EXPORT bool isOwnLine(QAnyStringView line);

} // namespace hostruntime
