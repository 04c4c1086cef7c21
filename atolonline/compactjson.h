#pragma once

#include <QByteArray>
#include <QJsonObject>

namespace atolonline {

/// Returns the same bytes as QJsonDocument::toJson(QJsonDocument::Compact), in less time.
[[nodiscard]] QByteArray compactJson(const QJsonObject& object);

} // namespace atolonline
