#include "host/log/spelling.h"

#include <QByteArray>
#include <QChar>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace hostruntime {

namespace {

// Bounds the work for a text made of nothing but escapes. Escapers in a row reach neither.
constexpr int deepest = 3;
constexpr qsizetype mostReadings = 8;
constexpr int mostDigits = 8;

constexpr std::pair<char16_t, char16_t> jsonEscapes[] = {
    {u'"', u'"'},
    {u'\\', u'\\'},
    {u'/', u'/'},
    {u'b', u'\b'},
    {u'f', u'\f'},
    {u'n', u'\n'},
    {u'r', u'\r'},
    {u't', u'\t'},
};

constexpr std::pair<QStringView, char16_t> htmlNames[] = {
    {u"amp", u'&'},
    {u"lt", u'<'},
    {u"gt", u'>'},
    {u"quot", u'"'},
    {u"apos", u'\''},
};

int digitOf(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    const int letter = (unit | 0x20) - u'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

struct Number
{
    char32_t value = 0;
    int digits = 0;
    qsizetype end = 0;
};

class Reader
{
public:
    Reader(QStringView read, int nesting)
        : text(read)
        , depth(nesting)
    {
    }

    [[nodiscard]] Readings at(qsizetype from) const
    {
        Readings found;
        if (from >= text.size())
            return found;
        const char16_t unit = text.at(from).unicode();
        found.push_back({unit, 0, from + 1});
        if (unit == u'+')
            found.push_back({u' ', 0, from + 1});
        if (depth == 0 || !beginsSpelling(unit))
            return found;
        // What begins an escape may be the result of another one.
        const Reader inner(text, depth - 1);
        for (qsizetype i = 0; i < found.size() && found.size() < mostReadings; ++i)
            inner.addEscape(found, found.at(i));
        return found;
    }

private:
    void addEscape(Readings& found, Reading head) const
    {
        if (head.first == u'\\')
            addJson(found, head.end);
        else if (head.first == u'&')
            addHtml(found, head.end);
        else if (head.first == u'%')
            addPercent(found, head.end);
    }

    static void add(Readings& found, char32_t point, qsizetype end)
    {
        if (QChar::requiresSurrogates(point))
            found.push_back({QChar::highSurrogate(point), QChar::lowSurrogate(point), end});
        else
            found.push_back({static_cast<char16_t>(point), 0, end});
    }

    void addJson(Readings& found, qsizetype from) const
    {
        for (const Reading& letter : at(from)) {
            for (const auto& [escape, unit] : jsonEscapes) {
                if (letter.first == escape)
                    add(found, unit, letter.end);
            }
            if (letter.first != u'u')
                continue;
            if (const Number number = numberAt(letter.end, 16, 4); number.digits == 4)
                add(found, number.value, number.end);
        }
    }

    void addHtml(Readings& found, qsizetype from) const
    {
        if (const auto hash = expect(u'#', from)) {
            auto x = expect(u'x', *hash);
            if (!x)
                x = expect(u'X', *hash);
            const Number number = x ? numberAt(*x, 16, mostDigits) : numberAt(*hash, 10, mostDigits);
            const auto end = expect(u';', number.end);
            if (number.digits > 0 && number.value <= QChar::LastValidCodePoint && end)
                add(found, number.value, *end);
            return;
        }
        for (const auto& [name, unit] : htmlNames) {
            if (!text.sliced(from).startsWith(name, Qt::CaseInsensitive))
                continue;
            if (const auto end = expect(u';', from + name.size()))
                add(found, unit, *end);
        }
    }

    // The bytes of one character in UTF-8.
    void addPercent(Readings& found, qsizetype from) const
    {
        Number number = numberAt(from, 16, 2);
        if (number.digits < 2)
            return;
        QByteArray bytes(1, static_cast<char>(number.value));
        const int length = number.value < 0x80   ? 1
                           : number.value < 0xC0 ? 0
                           : number.value < 0xE0 ? 2
                           : number.value < 0xF0 ? 3
                                                 : 4;
        while (bytes.size() < length) {
            const auto digits = expect(u'%', number.end);
            if (!digits)
                return;
            number = numberAt(*digits, 16, 2);
            if (number.digits < 2)
                return;
            bytes += static_cast<char>(number.value);
        }
        const QString character = QString::fromUtf8(bytes);
        if (length > 0 && !character.contains(QChar::ReplacementCharacter))
            add(found, character.toUcs4().first(), number.end);
    }

    // The next character, if there is a reading of it that is wanted.
    template <typename Predicate>
    [[nodiscard]] std::optional<Reading> next(qsizetype from, Predicate isWanted) const
    {
        if (from >= text.size())
            return std::nullopt;
        const char16_t unit = text.at(from).unicode();
        if (isWanted(unit))
            return Reading{unit, 0, from + 1};
        if (!beginsSpelling(unit))
            return std::nullopt;
        for (const Reading& reading : at(from)) {
            if (isWanted(reading.first))
                return reading;
        }
        return std::nullopt;
    }

    // The place after the character, if it is the next one.
    [[nodiscard]] std::optional<qsizetype> expect(char16_t unit, qsizetype from) const
    {
        const auto found = next(from, [&](char16_t read) { return read == unit; });
        return found ? std::optional(found->end) : std::nullopt;
    }

    [[nodiscard]] Number numberAt(qsizetype from, int base, int atMost) const
    {
        const auto isDigit = [&](char16_t read) { return digitOf(read) >= 0 && digitOf(read) < base; };
        Number number{0, 0, from};
        while (number.digits < atMost) {
            const auto digit = next(number.end, isDigit);
            if (!digit)
                break;
            number.value =
                number.value * static_cast<char32_t>(base) + static_cast<char32_t>(digitOf(digit->first));
            number.end = digit->end;
            ++number.digits;
        }
        return number;
    }

    QStringView text;
    int depth;
};

void addOnce(Places& places, qsizetype place)
{
    if (!places.contains(place))
        places.push_back(place);
}

} // namespace

Readings readingsAt(QStringView text, qsizetype from)
{
    return Reader(text, deepest).at(from);
}

Places endsOf(QStringView value, QStringView text, qsizetype from)
{
    // Nearly every text differs from the value before its first escape.
    qsizetype plain = 0;
    while (plain < value.size() && from < text.size() && text[from] == value[plain] &&
           !beginsSpelling(text[from].unicode())) {
        ++plain;
        ++from;
    }
    if (plain == value.size())
        return {from};
    if (from == text.size() || !beginsSpelling(text[from].unicode()))
        return {};

    Places now{from};
    Places next;
    Places afterNext;
    for (qsizetype i = plain; i < value.size() && !(now.isEmpty() && next.isEmpty()); ++i) {
        const char16_t unit = value[i].unicode();
        const char16_t following = i + 1 < value.size() ? value[i + 1].unicode() : u'\0';
        for (const qsizetype place : now) {
            for (const Reading& reading : readingsAt(text, place)) {
                if (reading.first != unit)
                    continue;
                if (reading.second == 0)
                    addOnce(next, reading.end);
                else if (reading.second == following)
                    addOnce(afterNext, reading.end);
            }
        }
        now = std::exchange(next, std::exchange(afterNext, {}));
    }
    return now;
}

} // namespace hostruntime
