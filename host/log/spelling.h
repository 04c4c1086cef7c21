#pragma once

#include <QStringView>
#include <QVarLengthArray>

namespace hostruntime {

/// A character at some place of a text, as one of its readers understands it.
struct Reading
{
    char16_t first = 0;
    /// The second half of a character beyond the 16-bit range; 0 for any other.
    char16_t second = 0;
    /// The place after it.
    qsizetype end = 0;
};

using Readings = QVarLengthArray<Reading, 8>;
using Places = QVarLengthArray<qsizetype, 8>;

/// Whether more than one reading can begin with this character.
[[nodiscard]] constexpr bool beginsSpelling(char16_t unit)
{
    return unit == u'%' || unit == u'&' || unit == u'\\' || unit == u'+';
}

/// Every reading of the character at `from`: as it is, percent-encoded (also with "+" for a space), escaped
/// for JSON, escaped for HTML, and one of these within another.
[[nodiscard]] Readings readingsAt(QStringView text, qsizetype from);

/// Where the spellings of `value` that begin at `from` end: each of its characters in any of its readings.
[[nodiscard]] Places endsOf(QStringView value, QStringView text, qsizetype from);

} // namespace hostruntime
