#include "emulator/http/guard.h"

namespace emulator {

namespace {

std::string withoutPort(const std::string& host)
{
    const std::size_t bracket = host.find(']');
    const std::size_t colon = host.find(':', bracket == std::string::npos ? 0 : bracket);
    return host.substr(0, colon);
}

} // namespace

std::string rejectionReason(const Request& request, const std::vector<std::string>& hosts, bool isPage)
{
    const std::string host = request.header("Host");
    const std::string name = withoutPort(host);
    const bool own =
        name == "127.0.0.1" || name == "localhost" || name == "[::1]" || std::ranges::count(hosts, name) > 0;
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
