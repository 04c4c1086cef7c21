#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace emulator {

/// A request as read, with path and query percent-decoded.
struct Request
{
    std::string method{};
    std::string path{};
    std::vector<std::pair<std::string, std::string>> query{};
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string body{};
    /// Every byte as received.
    std::string raw{};
    /// Whether the client allows the connection to stay open after the answer.
    bool keepAlive = true;

    /// The first header of that name, in any letter case; empty if there is none.
    [[nodiscard]] std::string header(std::string_view name) const
    {
        const auto found =
            std::ranges::find_if(headers, [name](const auto& one) { return isNamed(one, name); });
        return found == headers.end() ? std::string() : found->second;
    }

    /// How many headers have that name.
    [[nodiscard]] std::ptrdiff_t count(std::string_view name) const
    {
        return std::ranges::count_if(headers, [name](const auto& one) { return isNamed(one, name); });
    }

    /// The first query parameter of that name; empty if there is none.
    [[nodiscard]] std::string parameter(std::string_view name) const
    {
        for (const auto& [key, value] : query) {
            if (key == name)
                return value;
        }
        return {};
    }

private:
    static bool isNamed(const std::pair<std::string, std::string>& header, std::string_view name)
    {
        return std::ranges::equal(header.first, name,
            [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
    }
};

/// Status, headers and body of an answer.
struct Reply
{
    int status = 200;
    std::string contentType = "application/json; charset=utf-8";
    std::string body{};
    /// Additional headers, each line ending in CRLF.
    std::string headers{};
};

/// Sets path and query from a request target such as "/a%20b?c=d".
void setTarget(Request& request, std::string_view target);

/// Status line and headers up to and including the empty line. `contentLength` is declared, right or wrong;
/// without one, the body comes in chunks.
[[nodiscard]] std::string head(const Reply& reply, std::optional<std::size_t> contentLength, bool keepAlive);

/// A piece of a body that comes in chunks; an empty one ends the body.
[[nodiscard]] std::string chunkOf(const std::string& piece);

} // namespace emulator
