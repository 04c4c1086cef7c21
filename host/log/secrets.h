#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QStringView>

/// Values that must not appear in a log. Each is registered where it becomes known; everything in a line of a
/// Log4Qt::Logger that may hold one of them is searched for all of them (host/log/log4qt.h says what that
/// is).
///
/// A value is found in any spelling: each of its characters as it is, percent-encoded, escaped for JSON or
/// for HTML, or one of these within another. A value of fewer than four characters is found only as a
/// complete quoted string, because it would otherwise mask innocent text. Text that is not written through a
/// Log4Qt::Logger must be masked by whoever writes it.
///
/// Of each of the four kinds only so many values are remembered, those that were added last. The kinds are
/// counted apart: neither buyers nor what a service says can make a password or a login readable.
///
/// Thread-safe.
namespace hostruntime::secrets {

/// Who may read a text.
enum class Audience
{
    /// Log files as they are kept in operation: info and above.
    Anyone,
    /// A log at debug level, switched on to look for a fault.
    Developer,
};

/// What replaces a value.
inline constexpr QStringView mask = u"***";

/// Registers a password; it is masked for everyone. 256 are remembered; an empty text is ignored.
HOST_EXPORT void addCredential(const QString& value);
/// Registers a token; it is masked for everyone. 256 are remembered; an empty text is ignored.
HOST_EXPORT void addToken(const QString& value);
/// Registers a login; it is masked for Audience::Anyone. 256 are remembered; an empty text is ignored.
HOST_EXPORT void addLogin(const QString& value);
/// Registers a buyer's telephone number or e-mail address; it is masked for Audience::Anyone. 64 are
/// remembered; an empty text is ignored.
HOST_EXPORT void addPersonal(const QString& value);
/// Registers "email" and "phone" of a receipt's "client", a JSON object, as personal. It is read when a text
/// is next searched, unless 64 others have been added by then.
void addBuyer(const QByteArray& client);

/// The text, with the mask in place of every registered value that the audience must not read.
[[nodiscard]] HOST_EXPORT QString masked(const QString& text, Audience audience);

/// The same for every text in a JSON value, the names of its members included.
[[nodiscard]] HOST_EXPORT QJsonValue masked(const QJsonValue& value, Audience audience);

/// Forgets all values.
HOST_EXPORT void clear();

} // namespace hostruntime::secrets
