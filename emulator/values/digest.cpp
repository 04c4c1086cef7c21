#include "emulator/values/digest.h"

#include <openssl/sha.h>

#include <array>

namespace emulator {

std::string digestOf(std::string_view text)
{
    std::array<unsigned char, SHA256_DIGEST_LENGTH> bytes{};
    SHA256(reinterpret_cast<const unsigned char*>(text.data()), text.size(), bytes.data());
    std::string digits;
    digits.reserve(2 * bytes.size());
    for (const unsigned char byte : bytes) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

} // namespace emulator
