#pragma once

#include <QString>
#include <QStringList>

namespace frhost {

/// The names that --log-level takes, from the most talkative to the quietest.
[[nodiscard]] QStringList logLevels();

/// Lets the drivers' log lines of the level and above through, to standard error. The environment variables
/// QT_LOGGING_RULES and QT_MESSAGE_PATTERN go first.
void startLogging(const QString& level);

} // namespace frhost
