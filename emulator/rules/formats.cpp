#include "emulator/rules/formats.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace emulator {

namespace {

constexpr std::size_t gtinLength = 14;
constexpr char groupSeparator = '\x1D';

bool allDigits(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool allPrintable(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return (c >= '!' && c <= '~') || c == groupSeparator; });
}

} // namespace

std::int64_t characters(const std::string& text)
{
    return std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
}

bool isInn(const std::string& text)
{
    return (text.size() == 10 || text.size() == 12) && allDigits(text);
}

bool isPhone(const std::string& text)
{
    const bool plus = text.starts_with('+');
    const std::string_view digits = std::string_view(text).substr(plus ? 1 : 0);
    return !digits.empty() && text.size() <= (plus ? 19 : 17) && allDigits(digits);
}

bool isAgentPhone(const std::string& text)
{
    const auto excluded = [](char c) {
        return c == '\\' || std::isspace(static_cast<unsigned char>(c)) != 0;
    };
    return std::ranges::none_of(text, excluded) && characters(text) <= (text.starts_with('+') ? 19 : 17);
}

bool isHexBytes(const std::string& text, std::int64_t most)
{
    if (text.size() % 3 != 2)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSpace = i % 3 == 2;
        if (isSpace ? text[i] != ' ' : std::isxdigit(static_cast<unsigned char>(text[i])) == 0)
            return false;
    }
    return static_cast<std::int64_t>(text.size() + 1) / 3 <= most;
}

bool isScannedCode(const std::string& text)
{
    constexpr std::size_t longest = 150;
    constexpr std::size_t tobaccoLength = 29;
    if (text.size() > longest || !allPrintable(text))
        return false;
    if (text.size() == tobaccoLength && allDigits(text.substr(0, gtinLength)))
        return true;
    // A scanner may keep the separator that begins the symbol.
    const std::string_view code = std::string_view(text).substr(text.starts_with(groupSeparator) ? 1 : 0);
    constexpr std::size_t serialAt = 2 + gtinLength + 2;
    return code.size() > serialAt && code.starts_with("01") && allDigits(code.substr(2, gtinLength)) &&
           code.substr(2 + gtinLength, 2) == "21";
}

} // namespace emulator
