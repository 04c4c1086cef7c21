#pragma once

#include <QByteArray>
#include <QString>

namespace bench {

/// A file of golden/; ends the program when there is none.
[[nodiscard]] QByteArray goldenFile(const QString& name);

/// Ends the program unless the request of the sample sale of so many lines is, but for its time, the one of
/// golden/: byte for byte up to 100 lines, by its SHA-256 above.
void requireGolden(const char* contender, const QByteArray& request, int lines);

/// Ends the program with a message unless the condition holds.
void require(const char* contender, bool condition, const QString& what);

} // namespace bench
