#include "emulator/replay/namedfields.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace emulator {

namespace {

constexpr std::string_view fieldMark = ": #/";
constexpr std::size_t mostFields = 50;

// What the service's words mean. Its limits are not known from them.
constexpr std::pair<std::string_view, std::string_view> meanings[] = {
    {"PropertyRequired", "обязательное поле"},
    {"NumberTooSmall", "число слишком маленькое"},
    {"NumberTooBig", "число слишком большое"},
    {"NumberNotMultipleOf", "слишком много знаков после точки"},
    {"NumberExpected", "ожидается число"},
    {"StringTooShort", "строка слишком короткая"},
    {"StringTooLong", "строка слишком длинная"},
    {"StringExpected", "ожидается строка"},
    {"PatternMismatch", "значение записано не по правилам"},
    {"NotInEnumeration", "такого значения нет в списке допустимых"},
    {"TooFewItems", "слишком мало элементов"},
    {"TooManyItems", "слишком много элементов"},
    {"ArrayExpected", "ожидается массив"},
    {"ObjectExpected", "ожидается объект"},
    {"BooleanExpected", "ожидается true или false"},
};

// A word that is not known says it by itself.
std::string meaningOf(std::string_view word)
{
    const auto* found =
        std::ranges::find(meanings, word, &std::pair<std::string_view, std::string_view>::first);
    return std::string(found == std::end(meanings) ? word : found->second);
}

} // namespace

Json fieldsNamedIn(const std::string& text)
{
    Json all = Json::array();
    std::string_view rest = text;
    for (std::size_t at = rest.find(fieldMark); at != std::string_view::npos && all.size() < mostFields;
         at = rest.find(fieldMark)) {
        const std::string_view before = rest.substr(0, at);
        rest.remove_prefix(at + fieldMark.size());
        std::string_view field = rest.substr(0, rest.find_first_of(", ;\r\n"));
        if (field.ends_with('.'))
            field.remove_suffix(1);
        all.push_back(
            {{"field", field}, {"rule", meaningOf(before.substr(before.find_last_of(", ;\r\n") + 1))}});
    }
    return all;
}

} // namespace emulator
