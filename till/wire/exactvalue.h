#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace till {

// A value of the service's JSON counts only if it is of its type: a conversion would make a proof of a number
// out of a text, or another number out of one that is too large.

/// The text; empty when the value is anything else.
[[nodiscard]] QString exactText(const QVariant& value);

/// The number; none when the value is not a number with an integral value from `least` to `greatest`. Both
/// limits must be exact as doubles.
[[nodiscard]] std::optional<qint64> exactInteger(const QVariant& value, qint64 least, qint64 greatest);

/// The number; none when the value is anything else.
[[nodiscard]] std::optional<double> exactNumber(const QVariant& value);

} // namespace till
