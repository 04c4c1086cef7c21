#pragma once

#include <QString>
#include <QStringList>

namespace till {

/// The known name that a mistyped one is most likely meant to be; empty when none is near enough: a third of
/// its letters may be wrong, and at least one.
[[nodiscard]] QString nearestName(const QString& name, const QStringList& known);

/// "did you mean ...?" with the nearest name or, where none is near enough, all known ones.
[[nodiscard]] QString hintFor(const QString& name, const QStringList& known);

} // namespace till
