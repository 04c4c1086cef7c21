#pragma once

#include <QString>

#include <array>
#include <utility>

/// Characters that move a terminal's cursor, change the direction of a text or cannot be seen: the controls,
/// formats, separators of lines, halves of surrogate pairs and default ignorables of Unicode 15, by number.
inline constexpr std::array<std::pair<char32_t, char32_t>, 28> hiddenCharacters = {{
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
}};

/// Whether one of them is there, line breaks aside.
[[nodiscard]] inline bool hasHiddenCharacter(const QString& text)
{
    for (const char32_t point : text.toStdU32String()) {
        for (const auto& [first, last] : hiddenCharacters) {
            if (point != U'\n' && point >= first && point <= last)
                return true;
        }
    }
    return false;
}
