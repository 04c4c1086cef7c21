#pragma once

#include <QString>
#include <QStringList>

namespace till {

/// The known name that a mistyped one is most likely meant to be; empty when there are no known names.
[[nodiscard]] QString nearestName(const QString& name, const QStringList& known);

} // namespace till
