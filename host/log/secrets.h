#pragma once

#include "host/export.h"

#include <QString>

/// The values that must not be read in a log. Each is registered where it becomes known, and everything that
/// goes through a Log4Qt::Logger is searched for them.
///
/// A value is found as it is, percent-encoded and escaped for JSON. One of fewer than four characters is
/// found only where it is a whole quoted text, because it would blank out innocent lines otherwise. Values
/// given to anything that is not a Log4Qt::Logger are the caller's care.
///
/// All calls may come from any thread.
namespace hostruntime::secrets {

/// Who reads a line.
enum class Audience
{
    /// Log files as they are kept in operation: info and above.
    Anyone,
    /// A log at debug level, switched on to look for a fault.
    Developer,
};

/// What stands in a log instead.
inline constexpr QStringView mask = u"***";

/// A password or a token: masked for everyone. The latest 256 are remembered; an empty text is none.
HOST_EXPORT void addCredential(const QString& value);
/// A buyer's telephone or e-mail address: masked for Audience::Anyone. The latest 64 are remembered; an empty
/// text is none.
HOST_EXPORT void addPersonal(const QString& value);

/// The text with the mask in place of every registered value.
[[nodiscard]] HOST_EXPORT QString masked(const QString& text, Audience audience);

/// Forgets every value.
HOST_EXPORT void clear();

} // namespace hostruntime::secrets
