#include "emulator/http/guard.h"

#include <charconv>
#include <string_view>

namespace emulator {

namespace {

bool isPort(std::string_view text)
{
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && text.front() != '0' && value <= 65535;
}

// The name of `name` or `name:port`, with an IPv6 address in brackets; empty for anything else.
std::string nameIn(const std::string& host)
{
    const std::size_t end =
        host.starts_with('[') ? host.find(']') + 1 : std::min(host.find(':'), host.size());
    const std::string_view rest = std::string_view(host).substr(end);
    const bool good = rest.empty() || (rest.front() == ':' && isPort(rest.substr(1)));
    return good ? host.substr(0, end) : std::string();
}

} // namespace

std::string rejectionReason(const Request& request, const std::vector<std::string>& hosts, bool isPage)
{
    for (const char* header : {"Host", "Origin"}) {
        if (request.count(header) > 1)
            return "there is more than one " + std::string(header);
    }
    const std::string host = request.header("Host");
    const std::string name = nameIn(host);
    const bool own = name == "127.0.0.1" || name == "localhost" || name == "[::1]" ||
                     (!name.empty() && std::ranges::count(hosts, name) > 0);
    if (!own)
        return "Host " + host + " is not served here";
    const std::string origin = request.header("Origin");
    if (!origin.empty() && origin != "http://" + host && origin != "https://" + host)
        return "Origin " + origin + " is not allowed";
    // A browser sends no Origin with a request for an image or a script, but it does send this.
    const std::string site = request.header("Sec-Fetch-Site");
    const bool link = isPage && request.header("Sec-Fetch-Mode") == "navigate";
    if ((site == "cross-site" || site == "same-site") && !link)
        return "requests from pages of other sites are not allowed";
    return {};
}

} // namespace emulator
