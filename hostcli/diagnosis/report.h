#pragma once

#include "hostcli/failure.h"
#include "till/diagnosis/finding.h"

#include <QByteArray>
#include <QJsonArray>

namespace frhost {

/// A line for each finding: its grade, its subject, its text.
[[nodiscard]] QByteArray textOf(const QList<till::Finding>& findings);

/// An object with "grade", "subject" and "text" for each finding.
[[nodiscard]] QJsonArray jsonOf(const QList<till::Finding>& findings);

[[nodiscard]] bool hasFault(const QList<till::Finding>& findings);

/// The highest of the faults.
[[nodiscard]] ExitCode exitCodeOf(const QList<till::Finding>& findings);

} // namespace frhost
