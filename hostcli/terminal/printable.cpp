#include "hostcli/terminal/printable.h"

#include <QChar>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

// Controls, formats, separators of lines, halves of surrogate pairs, and what Unicode recommends to show as
// nothing ("default ignorable"); Unicode 15, whichever version Qt knows.
constexpr std::pair<char32_t, char32_t> hidden[] = {
    {0x0000, 0x001F},
    {0x007F, 0x009F},
    {0x00AD, 0x00AD},
    {0x034F, 0x034F},
    {0x0600, 0x0605},
    {0x061C, 0x061C},
    {0x06DD, 0x06DD},
    {0x070F, 0x070F},
    {0x0890, 0x0891},
    {0x08E2, 0x08E2},
    {0x115F, 0x1160},
    {0x17B4, 0x17B5},
    {0x180B, 0x180F},
    {0x200B, 0x200F},
    {0x2028, 0x202E},
    {0x2060, 0x206F},
    {0x3164, 0x3164},
    {0xD800, 0xDFFF},
    {0xFE00, 0xFE0F},
    {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},
    {0x110BD, 0x110BD},
    {0x110CD, 0x110CD},
    {0x13430, 0x1343F},
    {0x1BCA0, 0x1BCA3},
    {0x1D173, 0x1D17A},
    {0xE0000, 0xE0FFF},
};

// In JSON, these stand between texts; within one they are escaped anyway.
bool isJsonSpace(char32_t point)
{
    return point == U'\n' || point == U'\r' || point == U'\t';
}

QString escaped(char32_t point)
{
    QString text;
    // Named, because it must outlive the loop.
    const auto units = QChar::fromUcs4(point);
    for (const QChar unit : QStringView(units))
        text += u"\\u%1"_s.arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    return text;
}

} // namespace

bool isHidden(char32_t point)
{
    const auto* range = std::lower_bound(std::begin(hidden), std::end(hidden), point,
        [](const auto& before, char32_t wanted) { return before.second < wanted; });
    return range != std::end(hidden) && point >= range->first;
}

QString printable(const QString& text)
{
    std::u32string points = text.toStdU32String();
    std::replace_if(points.begin(), points.end(), isHidden, U'\uFFFD');
    return QString::fromStdU32String(points);
}

QString printableLines(const QString& text)
{
    QStringList lines;
    for (const QString& line : text.split(u'\n'))
        lines << printable(line);
    return lines.join(u'\n');
}

QByteArray printableJson(const QByteArray& json)
{
    QString text;
    for (const char32_t point : QString::fromUtf8(json).toStdU32String()) {
        if (isHidden(point) && !isJsonSpace(point))
            text += escaped(point);
        else
            text += QChar::fromUcs4(point);
    }
    return text.toUtf8();
}

} // namespace frhost
