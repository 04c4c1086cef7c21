#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace frhost {

/// Rows as text, each line ended by a line break: columns two spaces apart and as wide as their widest cell,
/// indented by `indent` spaces. Hidden characters of a cell are replaced.
[[nodiscard]] QString textTable(QList<QStringList> rows, int indent = 0);

} // namespace frhost
