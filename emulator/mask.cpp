#include "emulator/mask.h"

#include <algorithm>

namespace emulator {

namespace {

constexpr std::string_view stars = "***";

void replaceAll(std::string& text, const std::string& what)
{
    if (what.empty())
        return;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + stars.size()))
        text.replace(at, what.size(), stars);
}

/// Masks what follows `name` in the query of the first line.
void maskParameter(std::string& text, const std::string& name)
{
    const std::size_t line = std::min(text.find('\r'), text.size());
    for (const char before : {'?', '&'}) {
        const std::size_t at = text.find(before + name + "=");
        if (at >= line)
            continue;
        const std::size_t from = at + name.size() + 2;
        const std::size_t to = text.find_first_of("& ", from);
        text.replace(from, std::min(to, text.size()) - from, stars);
    }
}

std::string maskedLogin(const Call& call)
{
    if (!call.body.is_object())
        return std::string(stars);
    Json body = call.body;
    if (body.contains("pass"))
        body["pass"] = stars;
    return body.dump();
}

} // namespace

std::string maskedRequest(const Request& request, const Call& call)
{
    std::string text = request.raw;
    if (call.endpoint == Endpoint::Token && !request.body.empty()) {
        text.erase(std::min(text.find("\r\n\r\n"), text.size() - 4) + 4);
        text += maskedLogin(call);
    }
    replaceAll(text, request.header("Token"));
    maskParameter(text, "token");
    maskParameter(text, "pass");
    return text;
}

std::string maskedAnswer(const std::string& bytes, const Reply& honest, const Call& call)
{
    std::string text = bytes;
    if (call.endpoint != Endpoint::Token)
        return text;
    const Json body = Json::parse(honest.body, nullptr, false);
    if (!body.is_object() || !body.contains("token"))
        return text;
    // A cut answer may hold the beginning of the token alone.
    const auto token = body["token"].get<std::string>();
    const std::size_t at = text.find(token.substr(0, 8));
    if (at != std::string::npos)
        text.replace(at, std::min(token.size(), text.size() - at), stars);
    return text;
}

} // namespace emulator
