#include "host/log/secretsearch.h"

#include "host/log/spelling.h"

#include <algorithm>

namespace hostruntime {

namespace {

constexpr qsizetype shortest = 4;
constexpr char16_t quote = u'"';

constexpr std::size_t slot(char16_t unit)
{
    return unit & 0xFFU;
}

void addLongest(const Places& ends, qsizetype begin, Spans& found)
{
    if (!ends.isEmpty())
        found.push_back({begin, *std::max_element(ends.begin(), ends.end())});
}

// The value and the quotes around it, of which the first begins at `from`.
void addInQuotes(QStringView value, QStringView text, qsizetype from, Spans& found)
{
    for (const qsizetype begin : endsOf(QStringView(&quote, 1), text, from)) {
        Places ends = endsOf(value, text, begin);
        ends.removeIf([&](qsizetype end) { return endsOf(QStringView(&quote, 1), text, end).isEmpty(); });
        addLongest(ends, begin, found);
    }
}

} // namespace

void SecretSearch::add(const QString& value)
{
    const bool isShort = value.size() < shortest;
    const std::size_t at = slot(isShort ? quote : value.front().unicode());
    begins.at(at) = true;
    byBegin.at(at).push_back({value, isShort});
}

void SecretSearch::find(QStringView text, bool isQuoted, Spans& found) const
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text.at(i).unicode();
        if (beginsSpelling(unit)) {
            for (const Reading& reading : readingsAt(text, i))
                findAt(i, reading.first, text, found);
        } else if (begins[slot(unit)]) {
            findAt(i, unit, text, found);
        }
    }
    if (!isQuoted)
        return;
    for (const Wanted& wanted : byBegin[slot(quote)]) {
        if (wanted.isShort && endsOf(wanted.value, text, 0).contains(text.size()))
            found.push_back({0, text.size()});
    }
}

void SecretSearch::findAt(qsizetype from, char16_t unit, QStringView text, Spans& found) const
{
    for (const auto& [value, isShort] : byBegin[slot(unit)]) {
        if (isShort)
            addInQuotes(value, text, from, found);
        else if (value.front() == QChar(unit))
            addLongest(endsOf(value, text, from), from, found);
    }
}

} // namespace hostruntime
