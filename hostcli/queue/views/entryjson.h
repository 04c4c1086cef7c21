#pragma once

#include "queue/store/views.h"

#include <QJsonObject>

#include <vector>

namespace frhost {

/// One line that holds the object.
[[nodiscard]] QByteArray jsonLine(const QJsonObject& json);

/// A receipt as `list` shows it.
[[nodiscard]] QJsonObject toJson(const queue::Entry& entry);

/// The same with its content and history, as `show` and `export` have it.
[[nodiscard]] QJsonObject wholeJson(const queue::Entry& entry, const std::vector<queue::Event>& history);

} // namespace frhost
