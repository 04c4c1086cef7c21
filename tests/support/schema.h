#pragma once

#include <QByteArray>
#include <QString>

/// What keeps a JSON text from being valid under the JSON Schema in a file; empty when it is valid.
[[nodiscard]] QString schemaProblem(const QString& schemaFile, const QByteArray& json);
