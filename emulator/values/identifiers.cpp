#include "emulator/values/identifiers.h"

#include <cstddef>
#include <cstdint>
#include <random>

namespace emulator {

namespace {

std::string randomHex(std::size_t length)
{
    thread_local std::mt19937_64 source{std::random_device{}()};
    std::string text;
    text.reserve(length + 16);
    while (text.size() < length) {
        for (std::uint64_t bits = source(), i = 0; i < 16; ++i, bits >>= 4)
            text += "0123456789abcdef"[bits & 15];
    }
    text.resize(length);
    return text;
}

} // namespace

std::string newUuid()
{
    std::string text = randomHex(32);
    text[12] = '4';
    text[16] = '8';
    for (const std::size_t dash : {8u, 13u, 18u, 23u})
        text.insert(dash, 1, '-');
    return text;
}

} // namespace emulator
