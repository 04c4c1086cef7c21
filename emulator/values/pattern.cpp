#include "emulator/values/pattern.h"

#include <cstddef>
#include <optional>

namespace emulator {

namespace {

std::size_t nextCharacter(std::string_view text, std::size_t at)
{
    for (++at; at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;)
        ++at;
    return at;
}

} // namespace

bool matches(std::string_view text, std::string_view pattern)
{
    std::size_t t = 0;
    std::size_t p = 0;
    std::optional<std::size_t> star;
    std::size_t afterStar = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            afterStar = t;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            t = nextCharacter(text, t);
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star) {
            p = *star + 1;
            afterStar = nextCharacter(text, afterStar);
            t = afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

} // namespace emulator
