#include "emulator/callbacks/loopbackurl.h"

#include <boost/asio/ip/address.hpp>
#include <boost/beast/core/string.hpp>

#include <algorithm>
#include <charconv>

namespace emulator {

namespace {

using boost::beast::iequals;

// Anything else would have to be encoded, and could break the request into two.
bool isPrintable(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c > ' ' && c <= '~'; });
}

std::vector<std::string> loopbackAddresses(std::string_view host)
{
    namespace ip = boost::asio::ip;
    if (iequals(host, "localhost"))
        return {"127.0.0.1", "::1"};
    boost::system::error_code error;
    if (host == "[::1]")
        return {"::1"};
    const auto address = ip::make_address_v4(std::string(host), error);
    return !error && address.is_loopback() ? std::vector{address.to_string()} : std::vector<std::string>();
}

std::optional<std::uint16_t> portIn(std::string_view text)
{
    constexpr std::size_t mostDigits = 5;
    if (text.size() > mostDigits)
        return std::nullopt;
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && port > 0 ? std::optional(port) : std::nullopt;
}

} // namespace

std::optional<LoopbackUrl> loopbackUrl(std::string_view url)
{
    constexpr std::string_view scheme = "http://";
    if (url.size() > longestUrl || !isPrintable(url) || !iequals(url.substr(0, scheme.size()), scheme))
        return std::nullopt;
    url.remove_prefix(scheme.size());
    url = url.substr(0, url.find('#'));
    const std::string_view authority = url.substr(0, url.find_first_of("/?"));
    const std::string_view rest = url.substr(authority.size());

    // The colons of an IPv6 address are within brackets.
    const std::size_t colon = authority.find(':', authority.starts_with('[') ? authority.find(']') : 0);
    LoopbackUrl found{.addresses = loopbackAddresses(authority.substr(0, colon)),
        .authority = std::string(authority),
        .target = (rest.starts_with('/') ? "" : "/") + std::string(rest)};
    if (colon != std::string_view::npos) {
        const auto port = portIn(authority.substr(colon + 1));
        if (!port)
            return std::nullopt;
        found.port = *port;
    }
    return found.addresses.empty() ? std::nullopt : std::optional(found);
}

} // namespace emulator
