#pragma once

#include <QString>
#include <QStringList>

namespace frhost {

/// The names that --log-level accepts, from the most to the least verbose.
[[nodiscard]] QStringList logLevels();

/// Keeps Qt from telling the user to reconfigure the machine's locale. Call before the application object is
/// made; every other message appears as it is.
void ignoreLocaleWarning();

/// Sends the drivers' log lines of this level and above to standard error. The environment variables
/// QT_LOGGING_RULES and QT_MESSAGE_PATTERN take precedence.
void startLogging(const QString& level);

} // namespace frhost
