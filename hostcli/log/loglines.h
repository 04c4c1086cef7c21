#pragma once

#include "hostcli/terminal/console.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace frhost {

// Which of the drivers' lines are shown, and how.

/// The names that --log-level accepts, from the most to the least verbose; lines show the same names.
[[nodiscard]] QStringList logLevels();

/// The rules of QLoggingCategory that leave out what is below the level, one of logLevels() or "critical".
[[nodiscard]] QString filterRules(const QString& level);

/// The level at which a driver's line is filed. The driver calls every error object of the service an error;
/// those that belong to a sale without incident are filed as information: what matters of them, the
/// program says itself.
[[nodiscard]] QtMsgType filedLevel(QtMsgType level, const QString& line);

[[nodiscard]] Urgency urgencyOf(QtMsgType level);

/// A line for a person who looks for a fault: time with its offset from UTC, process, level, category, text.
[[nodiscard]] QString logLine(
    const QDateTime& time, qint64 process, Urgency urgency, const QString& category, const QString& text);

} // namespace frhost
