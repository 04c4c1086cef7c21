#pragma once

#include <array>
#include <initializer_list>
#include <string_view>

namespace emulator {

enum class Endpoint
{
    Token,
    Sell,
    Report,
    Callback, ///< made by the emulator itself
    Unknown   ///< any other call
};

/// Those that clients call.
inline constexpr std::array knownEndpoints{Endpoint::Token, Endpoint::Sell, Endpoint::Report};

/// `token`, `sell`, `report`, `callback` or `unknown`.
[[nodiscard]] std::string_view nameOf(Endpoint endpoint);

/// The endpoint with that name; `Unknown` for any other text.
[[nodiscard]] Endpoint endpointNamed(std::string_view name);

class EndpointSet
{
public:
    constexpr EndpointSet(std::initializer_list<Endpoint> endpoints)
    {
        for (Endpoint endpoint : endpoints)
            bits |= bitOf(endpoint);
    }

    [[nodiscard]] constexpr bool contains(Endpoint endpoint) const { return (bits & bitOf(endpoint)) != 0; }

private:
    static constexpr unsigned bitOf(Endpoint endpoint) { return 1U << static_cast<unsigned>(endpoint); }

    unsigned bits = 0;
};

} // namespace emulator
