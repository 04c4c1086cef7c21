#pragma once

#include <QByteArray>
#include <QJsonObject>

namespace atolonline {

/// Byte for byte what QJsonDocument::toJson(QJsonDocument::Compact) makes of the object, in less
/// time.
[[nodiscard]] QByteArray compactJson(const QJsonObject& object);

} // namespace atolonline
