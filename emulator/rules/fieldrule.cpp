#include "emulator/rules/fieldrule.h"

#include "emulator/values/money.h"
#include "emulator/values/moscowtime.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace emulator {

namespace {

using enum FieldKind;

bool allDigits(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t characters(const std::string& text)
{
    return std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
}

bool between(std::optional<std::int64_t> value, const FieldRule& rule)
{
    return value && *value >= rule.low && *value <= rule.high;
}

bool isPhone(const std::string& text)
{
    const bool plus = text.starts_with('+');
    const std::string_view digits = std::string_view(text).substr(plus ? 1 : 0);
    return !digits.empty() && text.size() <= (plus ? 19 : 17) && allDigits(digits);
}

bool isHexBytes(const std::string& text, const FieldRule& rule)
{
    if (text.size() % 3 != 2)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSpace = i % 3 == 2;
        if (isSpace ? text[i] != ' ' : std::isxdigit(static_cast<unsigned char>(text[i])) == 0)
            return false;
    }
    return between(static_cast<std::int64_t>(text.size() + 1) / 3, rule);
}

std::string_view numberViolation(const Json& value, const FieldRule& rule, int scale)
{
    if (!value.is_number())
        return "NumberExpected";
    const double parts = value.get<double>() * scale;
    if (parts < static_cast<double>(rule.low))
        return "NumberTooSmall";
    return parts > static_cast<double>(rule.high) ? "NumberTooBig" : "NumberNotMultipleOf";
}

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

} // namespace

bool isInn(const std::string& text)
{
    return (text.size() == 10 || text.size() == 12) && allDigits(text);
}

bool holds(const Json& value, const FieldRule& rule, const Lists& lists)
{
    const auto text = [&] { return value.is_string() ? value.get<std::string>() : std::string(); };
    switch (rule.kind) {
    case Object:
        return value.is_object();
    case Array:
        return value.is_array() && between(static_cast<std::int64_t>(value.size()), rule);
    case Text:
        return value.is_string() && between(characters(text()), rule);
    case Timestamp:
        return isTimestamp(text());
    case Inn:
        return isInn(text());
    case Phone:
        return isPhone(text()) || (rule.need == Need::Optional && value.is_string() && text().empty());
    case Money:
        return between(wholePartsOf(value, 100), rule);
    case Quantity:
        return between(wholePartsOf(value, 1000), rule);
    case Integer:
        return between(wholePartsOf(value, 1), rule);
    case HexBytes:
        return isHexBytes(text(), rule);
    case OneOf:
        return value.is_string() && std::ranges::count(lists.*rule.names, text()) > 0;
    }
    return false;
}

std::string_view violationOf(const Json& value, const FieldRule& rule)
{
    if (value.is_null())
        return "PropertyRequired";
    switch (rule.kind) {
    case Object:
        return "ObjectExpected";
    case Array:
        if (!value.is_array())
            return "ArrayExpected";
        return static_cast<std::int64_t>(value.size()) < rule.low ? "TooFewItems" : "TooManyItems";
    case Text:
        if (!value.is_string())
            return "StringExpected";
        return characters(value.get<std::string>()) < rule.low ? "StringTooShort" : "StringTooLong";
    case Timestamp:
    case Inn:
    case Phone:
    case HexBytes:
        return value.is_string() ? "PatternMismatch" : "StringExpected";
    case Money:
        return numberViolation(value, rule, 100);
    case Quantity:
        return numberViolation(value, rule, 1000);
    case Integer:
        return numberViolation(value, rule, 1);
    case OneOf:
        return "NotInEnumeration";
    }
    return {};
}

std::string expectation(const FieldRule& rule, const Lists& lists)
{
    const std::string low = std::to_string(rule.low);
    const std::string high = std::to_string(rule.high);
    switch (rule.kind) {
    case Object:
        return "ожидается объект";
    case Array:
        return "ожидается массив, элементов от " + low + " до " + high;
    case Text:
        return "ожидается строка длиной от " + low + " до " + high + " символов";
    case Timestamp:
        return "ожидаются дата и время в формате dd.mm.yyyy HH:MM:SS";
    case Inn:
        return "ожидается строка из 10 или 12 цифр";
    case Phone:
        return "ожидается телефон: «+» и до 18 цифр или до 17 цифр без «+»";
    case Money:
        return "ожидается число от 0 до 42949672.95, не более двух знаков после точки";
    case Quantity:
        return "ожидается число больше 0, но не больше 99999.999, не более трёх знаков после точки";
    case Integer:
        return "ожидается целое число от " + low + " до " + high;
    case HexBytes:
        return "ожидаются байты в шестнадцатеричном виде через пробел, от " + low + " до " + high;
    case OneOf:
        return "ожидается одно из значений: " + joined(lists.*rule.names);
    }
    return {};
}

} // namespace emulator
