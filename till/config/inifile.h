#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace till {

/// One `key = value` line of an INI file.
struct IniEntry
{
    QString section;
    QString key;
    QString value;
    /// Counted from 1.
    int line = 0;
};

/// Reads INI text in UTF-8. A value is everything after the first "=", without the spaces around it: quotes,
/// backslashes, commas, "#" and ";" are part of it. A comment is a line that begins with "#" or ";".
///
/// Throws Error that names the file and the line for a line that is none of these, a key outside a
/// section, a key given twice and text that is not UTF-8. No message quotes the text of a line: it may be a
/// password that lost its key.
[[nodiscard]] QList<IniEntry> parseIni(const QByteArray& text, const QString& fileName);

} // namespace till
