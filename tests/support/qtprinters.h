#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

// How GoogleTest shows Qt's texts when an assertion fails; found by argument-dependent look-up.
QT_BEGIN_NAMESPACE

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QStringList& lines, std::ostream* out)
{
    *out << "[\n";
    for (const QString& line : lines)
        *out << "  " << line.toStdString() << '\n';
    *out << ']';
}

QT_END_NAMESPACE
