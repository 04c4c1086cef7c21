#include "emulator/protocol/mask.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace emulator {

namespace {

constexpr std::string_view stars = "***";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headEnd = "\r\n\r\n";

// Removes the text before `separator`, and the separator itself, from `rest` and returns the text.
std::string_view takeUntil(std::string_view& rest, std::string_view separator)
{
    const std::string_view part = rest.substr(0, rest.find(separator));
    rest.remove_prefix(std::min(part.size() + separator.size(), rest.size()));
    return part;
}

bool isSecret(std::string name)
{
    constexpr std::array secrets{"token", "pass", "password", "authorization"};
    std::ranges::transform(
        name, name.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::ranges::find(secrets, name) != secrets.end();
}

// The name may be percent-encoded.
bool isSecretPair(std::string_view pair)
{
    Request request;
    setTarget(request, "?" + std::string(pair));
    return !request.query.empty() && isSecret(request.query.front().first);
}

std::string maskedRequestLine(std::string_view line)
{
    const std::size_t mark = line.find('?');
    if (mark == std::string_view::npos)
        return std::string(line);
    std::string text(line.substr(0, mark));
    const std::size_t end = std::min(line.find(' ', mark), line.size());
    std::string_view query = line.substr(mark + 1, end - mark - 1);
    for (char before = '?'; !query.empty(); before = '&') {
        const std::string_view pair = takeUntil(query, "&");
        text += before;
        text += isSecretPair(pair) ? std::string(pair.substr(0, pair.find('='))) + "=" + std::string(stars)
                                   : std::string(pair);
    }
    return text + std::string(line.substr(end));
}

std::string maskedHead(std::string_view head)
{
    std::string text = maskedRequestLine(takeUntil(head, lineEnd));
    bool secret = false;
    while (!head.empty()) {
        const std::string_view line = takeUntil(head, lineEnd);
        const bool isFolded = line.starts_with(' ') || line.starts_with('\t');
        if (isFolded && secret)
            continue;
        const std::string name(line.substr(0, line.find(':')));
        secret = !isFolded && isSecret(name);
        text += lineEnd;
        text += secret ? name + ": " + std::string(stars) : std::string(line);
    }
    return text;
}

std::string maskedBody(const std::string& body, const Call& call)
{
    if (call.body.is_object()) {
        if (!call.body.contains("pass"))
            return body;
        Json masked = call.body;
        masked["pass"] = stars;
        return toLine(masked);
    }
    const bool mayHoldPassword = call.endpoint == Endpoint::Token || body.find("pass") != std::string::npos;
    return mayHoldPassword && !body.empty() ? std::string(stars) : body;
}

// At any depth, so that it need not be known how the service nests its answers.
void maskSecrets(Json& json)
{
    for (auto& [key, value] : json.items()) {
        if (json.is_object() && isSecret(key))
            value = stars;
        else if (value.is_structured())
            maskSecrets(value);
    }
}

std::string maskedTokenAnswer(const std::string& body)
{
    Json json = parseShallow(body);
    if (!json.is_structured())
        return body.empty() ? body : std::string(stars);
    maskSecrets(json);
    // Always anew: of a key that occurs twice, only one has been looked at.
    return toLine(json);
}

} // namespace

std::string maskedRequest(const Request& request, const Call& call)
{
    const std::size_t end = std::min(request.raw.find(headEnd), request.raw.size());
    const std::string body = request.raw.substr(std::min(end + headEnd.size(), request.raw.size()));
    return maskedHead(std::string_view(request.raw).substr(0, end)) + std::string(headEnd) +
           maskedBody(body, call);
}

std::string maskedAnswer(const std::string& bytes, const Call& call)
{
    if (call.endpoint != Endpoint::Token)
        return bytes;
    const std::size_t head = bytes.find(headEnd);
    if (head == std::string::npos)
        return bytes;
    const std::size_t body = head + headEnd.size();
    return bytes.substr(0, body) + maskedTokenAnswer(bytes.substr(body));
}

} // namespace emulator
