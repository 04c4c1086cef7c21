#include "emulator/protocol/token.h"

#include "emulator/values/digest.h"

#include <cstddef>
#include <cstdint>
#include <random>

namespace emulator {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

// Parts of a token, in characters: its end in milliseconds, what is random, and what tells that it is one of
// ours.
constexpr std::size_t endLength = 11;
constexpr std::size_t randomLength = 85;
constexpr std::size_t sealLength = 32;
constexpr std::size_t length = endLength + randomLength + sealLength;

std::string encoded(std::uint64_t number)
{
    std::string text(endLength, 'A');
    for (std::size_t i = endLength; i > 0; number >>= 6)
        text[--i] = alphabet[number & 63];
    return text;
}

std::string randomText()
{
    thread_local std::mt19937_64 source{std::random_device{}()};
    std::uniform_int_distribution<std::size_t> anyOf(0, alphabet.size() - 1);
    std::string text;
    for (std::size_t i = 0; i < randomLength; ++i)
        text += alphabet[anyOf(source)];
    return text;
}

std::string sealOf(std::string_view text)
{
    return digestOf("fremulator " + std::string(text)).substr(0, sealLength);
}

} // namespace

std::string newToken(TimePoint expiresAt)
{
    const auto end = static_cast<std::uint64_t>(expiresAt.time_since_epoch().count());
    const std::string text = encoded(end) + randomText();
    return text + sealOf(text);
}

std::optional<TimePoint> endOf(std::string_view token)
{
    if (token.size() != length ||
        sealOf(token.substr(0, length - sealLength)) != token.substr(length - sealLength))
        return std::nullopt;
    std::uint64_t end = 0;
    for (const char character : token.substr(0, endLength))
        end = end << 6 | alphabet.find(character);
    return TimePoint(std::chrono::milliseconds(static_cast<std::int64_t>(end)));
}

} // namespace emulator
