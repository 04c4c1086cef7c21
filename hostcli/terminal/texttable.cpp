#include "hostcli/terminal/texttable.h"

#include "hostcli/terminal/printable.h"

#include <algorithm>
#include <utility>

namespace frhost {

namespace {

QList<qsizetype> columnWidths(const QList<QStringList>& rows)
{
    QList<qsizetype> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths.at(i), row.at(i).size());
    }
    return widths;
}

} // namespace

QString textTable(QList<QStringList> rows, int indent)
{
    for (QStringList& row : rows) {
        for (QString& cell : row)
            cell = printable(cell);
    }
    const QList<qsizetype> widths = columnWidths(rows);
    QString text;
    for (const QStringList& row : std::as_const(rows)) {
        QString line(indent, u' ');
        for (qsizetype i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? row.at(i).leftJustified(widths.at(i) + 2) : row.at(i);
        while (line.endsWith(u' '))
            line.chop(1);
        text += line + u'\n';
    }
    return text;
}

QString wrapped(const QString& text, int width)
{
    QStringList lines;
    for (const QString& paragraph : text.split(u'\n')) {
        QString line;
        for (const QString& word : paragraph.split(u' ')) {
            if (!line.isEmpty() && line.size() + 1 + word.size() > width) {
                lines << line;
                line = word;
            } else {
                line += line.isEmpty() ? word : u' ' + word;
            }
        }
        lines << line;
    }
    return lines.join(u'\n');
}

} // namespace frhost
