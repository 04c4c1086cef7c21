#pragma once

#include <QString>

namespace frhost {

/// Keeps Qt from telling the user to reconfigure the machine's locale. Call before the application object is
/// made; every other message appears as it is.
void ignoreLocaleWarning();

/// Sends the drivers' log lines of this level and above to standard error or, where `file` is not empty, to
/// that file, together with all that the program says. The file names neither logins nor buyers, at any
/// level. The environment variables QT_LOGGING_RULES and QT_MESSAGE_PATTERN take precedence.
///
/// Throws Failure when the file cannot be written.
void startLogging(const QString& level, const QString& file);

} // namespace frhost
