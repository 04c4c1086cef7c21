#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace frhost {

/// Rows as text, each line ended by a line break: columns two blanks apart and as wide as their widest cell,
/// `indent` blanks in front.
[[nodiscard]] QString textTable(const QList<QStringList>& rows, int indent = 0);

} // namespace frhost
