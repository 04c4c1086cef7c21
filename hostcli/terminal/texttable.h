#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace frhost {

/// Rows as text, each line ended by a line break: columns two spaces apart and as wide as their widest cell,
/// indented by `indent` spaces. Hidden characters of a cell are replaced.
[[nodiscard]] QString textTable(QList<QStringList> rows, int indent = 0);

/// The text with line breaks instead of spaces, so that no line has more than `width` characters unless a
/// single word does.
[[nodiscard]] QString wrapped(const QString& text, int width);

} // namespace frhost
