#include "emulator/values/plaintext.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace emulator {

namespace {

// How UTF-8 writes the characters from `first` on: bits of the first byte that tell, and how many bytes
// follow.
struct Form
{
    unsigned mask;
    unsigned mark;
    std::size_t following;
    std::uint32_t first;
};

constexpr std::array forms{
    Form{0x80, 0x00, 0, 0x20},
    Form{0xE0, 0xC0, 1, 0xA0}, // without the controls from 0x80
    Form{0xF0, 0xE0, 2, 0x800},
    Form{0xF8, 0xF0, 3, 0x10000},
};

bool isSurrogate(std::uint32_t character)
{
    return character >= 0xD800 && character <= 0xDFFF;
}

// The bytes of the character that `text` begins with; 0 if it begins with none that is allowed.
std::size_t lengthOfFirst(std::string_view text)
{
    constexpr std::uint32_t del = 0x7F;
    constexpr std::uint32_t last = 0x10FFFF;
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (const Form& form : forms) {
        if ((byte(0) & form.mask) != form.mark || text.size() <= form.following)
            continue;
        std::uint32_t character = byte(0) & ~form.mask;
        for (std::size_t i = 1; i <= form.following; ++i) {
            if ((byte(i) & 0xC0) != 0x80)
                return 0;
            character = character << 6 | (byte(i) & 0x3F);
        }
        const bool good =
            character >= form.first && character <= last && character != del && !isSurrogate(character);
        return good ? form.following + 1 : 0;
    }
    return 0;
}

} // namespace

bool isPlainText(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = lengthOfFirst(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace emulator
