#include "emulator/protocol/call.h"

#include <vector>

namespace emulator {

namespace {

std::vector<std::string> segments(std::string_view path)
{
    std::vector<std::string> parts;
    for (std::size_t from = 0; from <= path.size();) {
        const std::size_t end = std::min(path.find('/', from), path.size());
        parts.emplace_back(path.substr(from, end - from));
        from = end + 1;
    }
    return parts;
}

std::string textIn(const Json& body, const char* key)
{
    const auto found = body.is_object() ? body.find(key) : body.end();
    return found != body.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// The service accepts ids of up to 128 characters. A call with a longer one is refused but still counted.
std::string idIn(const Json& body)
{
    constexpr std::size_t longest = 1024;
    return textIn(body, "external_id").substr(0, longest);
}

void readTokenCall(Call& call, const Request& request)
{
    const bool inQuery = request.method == "GET";
    call.login = inQuery ? request.parameter("login") : textIn(call.body, "login");
    call.password = inQuery ? request.parameter("pass") : textIn(call.body, "pass");
}

} // namespace

Call readCall(const Request& request, bool mild)
{
    Call call;
    const bool get = request.method == "GET";
    const bool post = request.method == "POST";
    if (post)
        call.body = parseShallow(request.body);
    if (!request.path.starts_with(basePath))
        return call;
    std::string_view path = std::string_view(request.path).substr(basePath.size());
    if (mild && path.ends_with('/'))
        path.remove_suffix(1);
    const std::vector<std::string> parts = segments(path);

    call.token = request.header("Token");
    if (call.token.empty())
        call.token = request.parameter("token");

    if (parts.size() == 1 && parts[0] == "getToken" && (get || post)) {
        call.endpoint = Endpoint::Token;
        readTokenCall(call, request);
    } else if (parts.size() == 2 && post) {
        call.endpoint = Endpoint::Sell;
        call.group = parts[0];
        call.operation = parts[1];
        call.externalId = idIn(call.body);
    } else if (parts.size() == 3 && parts[1] == "report" && get) {
        call.endpoint = Endpoint::Report;
        call.group = parts[0];
        call.uuid = parts[2];
    }
    return call;
}

} // namespace emulator
