#pragma once

#include <QByteArray>
#include <QString>

namespace frhost {

/// Whether a character moves a terminal's cursor, changes the direction of a text or cannot be seen, so that
/// a text with it could pass for another one.
[[nodiscard]] bool isHidden(char32_t point);

/// The text as one line of visible characters: each hidden one becomes U+FFFD.
[[nodiscard]] QString printable(const QString& text);

/// The same of each line.
[[nodiscard]] QString printableLines(const QString& text);

/// The same JSON value with each hidden character in its texts written as \uXXXX; JSON in, JSON out.
[[nodiscard]] QByteArray printableJson(const QByteArray& json);

} // namespace frhost
