#include "emulator/rules/fieldrule.h"

#include "emulator/rules/formats.h"
#include "emulator/values/money.h"
#include "emulator/values/moscowtime.h"

#include <algorithm>
#include <optional>

namespace emulator {

namespace {

using enum FieldKind;

bool between(std::optional<std::int64_t> value, const FieldRule& rule)
{
    return value && *value >= rule.low && *value <= rule.high;
}

// How many parts, such as kopecks, a whole has; 0 for what is not a number.
int scaleOf(FieldKind kind)
{
    switch (kind) {
    case Money:
        return 100;
    case Thousandths:
        return 1000;
    case Millionths:
        return 1'000'000;
    case Integer:
        return 1;
    default:
        return 0;
    }
}

bool isText(const std::string& text, const FieldRule& rule, const Lists& lists)
{
    switch (rule.kind) {
    case Text:
        return between(characters(text), rule);
    case Timestamp:
        return isTimestamp(text);
    case TimestampOrIso:
        return isTimestamp(text) || isIsoTimestamp(text);
    case Inn:
        return isInn(text);
    case Phone:
        return isPhone(text) || (rule.need == Need::Optional && text.empty());
    case AgentPhone:
        return isAgentPhone(text);
    case HexBytes:
        return isHexBytes(text, rule.high);
    case MarkingCode:
        return isHexBytes(text, rule.high) || isScannedCode(text);
    case OneOf:
        return std::ranges::count(lists.*rule.names, text) > 0;
    default:
        return false;
    }
}

std::string_view numberViolation(const Json& value, const FieldRule& rule)
{
    if (!value.is_number())
        return "NumberExpected";
    const double parts = value.get<double>() * scaleOf(rule.kind);
    if (parts < static_cast<double>(rule.low))
        return "NumberTooSmall";
    return parts > static_cast<double>(rule.high) ? "NumberTooBig" : "NumberNotMultipleOf";
}

std::string_view textViolation(const std::string& text, const FieldRule& rule)
{
    if (rule.kind != Text)
        return rule.kind == OneOf ? "NotInEnumeration" : "PatternMismatch";
    return characters(text) < rule.low ? "StringTooShort" : "StringTooLong";
}

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

// Without zeros at the end.
std::string decimal(std::int64_t parts, int scale)
{
    std::string text = std::to_string(parts / scale);
    std::string fraction = std::to_string(scale + parts % scale).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    return fraction.empty() ? text : text + "." + fraction;
}

std::string textExpectation(const FieldRule& rule)
{
    switch (rule.kind) {
    case Text:
        return "ожидается строка длиной от " + std::to_string(rule.low) + " до " + std::to_string(rule.high) +
               " символов";
    case Timestamp:
        return "ожидаются дата и время в формате dd.mm.yyyy HH:MM:SS";
    case TimestampOrIso:
        return "ожидаются дата и время в формате dd.mm.yyyy HH:MM:SS или ISO 8601 с часовым поясом";
    case Inn:
        return "ожидается строка из 10 или 12 цифр";
    case Phone:
        return "ожидается телефон: «+» и до 18 цифр или до 17 цифр без «+»";
    case AgentPhone:
        return "ожидается телефон без пробелов: «+» и до 18 знаков или до 17 знаков без «+»";
    case HexBytes:
        return "ожидаются байты в шестнадцатеричном виде через пробел, от " + std::to_string(rule.low) +
               " до " + std::to_string(rule.high);
    case MarkingCode:
        return "ожидается код маркировки: байты в шестнадцатеричном виде через пробел, от " +
               std::to_string(rule.low) + " до " + std::to_string(rule.high) +
               ", текст GS1 до 150 символов или 29 символов с пачки табака";
    default:
        return {};
    }
}

} // namespace

bool holds(const Json& value, const FieldRule& rule, const Lists& lists)
{
    if (const int scale = scaleOf(rule.kind); scale > 0)
        return between(wholePartsOf(value, scale), rule);
    switch (rule.kind) {
    case Object:
        return value.is_object();
    case Array:
        return value.is_array() && between(static_cast<std::int64_t>(value.size()), rule);
    case Boolean:
        return value.is_boolean();
    default:
        return value.is_string() && isText(value.get_ref<const std::string&>(), rule, lists);
    }
}

std::string_view violationOf(const Json& value, const FieldRule& rule)
{
    if (value.is_null())
        return "PropertyRequired";
    if (scaleOf(rule.kind) > 0)
        return numberViolation(value, rule);
    switch (rule.kind) {
    case Object:
        return "ObjectExpected";
    case Array:
        if (!value.is_array())
            return "ArrayExpected";
        return static_cast<std::int64_t>(value.size()) < rule.low ? "TooFewItems" : "TooManyItems";
    case Boolean:
        return "BooleanExpected";
    case OneOf:
        return "NotInEnumeration";
    default:
        return value.is_string() ? textViolation(value.get_ref<const std::string&>(), rule)
                                 : "StringExpected";
    }
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
    case Boolean:
        return "ожидается true или false";
    case Money:
        return "ожидается число от " + decimal(rule.low, 100) + " до " + decimal(rule.high, 100) +
               ", не более двух знаков после точки";
    case Thousandths:
        return "ожидается число больше 0, но не больше " + decimal(rule.high, 1000) +
               ", не более трёх знаков после точки";
    case Millionths:
        return "ожидается число больше 0, но не больше " + decimal(rule.high, 1'000'000) +
               ", не более шести знаков после точки";
    case Integer:
        return "ожидается целое число от " + low + " до " + high;
    case OneOf:
        return "ожидается одно из значений: " + joined(lists.*rule.names);
    default:
        return textExpectation(rule);
    }
}

} // namespace emulator
