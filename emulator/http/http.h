#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace emulator {

/// A request as it was read, percent-encoding undone in path and query.
struct Request
{
    std::string method{};
    std::string path{};
    std::vector<std::pair<std::string, std::string>> query{};
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string body{};
    /// Every byte of it as it came.
    std::string raw{};
    /// Whether the client lets the connection stay after the answer.
    bool keepAlive = true;

    /// The first header of that name in any case of letters, or an empty text.
    [[nodiscard]] std::string header(std::string_view name) const
    {
        const auto same = [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
        };
        for (const auto& [key, value] : headers) {
            if (std::ranges::equal(key, name, same))
                return value;
        }
        return {};
    }

    /// The first value of that name in the address, or an empty text.
    [[nodiscard]] std::string parameter(std::string_view name) const
    {
        for (const auto& [key, value] : query) {
            if (key == name)
                return value;
        }
        return {};
    }
};

/// An answer before it is put on the wire.
struct Reply
{
    int status = 200;
    std::string contentType = "application/json; charset=utf-8";
    std::string body{};
    /// Further headers, whole lines that end in CRLF.
    std::string headers{};
};

/// Splits `target` ("/a%20b?c=d") into path and query.
void setTarget(Request& request, std::string_view target);

/// Status line and headers up to the empty line. `contentLength` is what they say, true or not.
[[nodiscard]] std::string head(const Reply& reply, std::size_t contentLength, bool keepAlive);

} // namespace emulator
