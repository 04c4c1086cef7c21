#include "emulator/http/http.h"

#include <array>
#include <charconv>
#include <utility>

namespace emulator {

namespace {

std::string decoded(std::string_view text, bool plusIsSpace)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned value = 0;
        const bool escape =
            text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(text.data() + i + 1, text.data() + i + 3, value, 16).ptr == text.data() + i + 3;
        if (escape) {
            out += static_cast<char>(value);
            i += 2;
        } else {
            out += plusIsSpace && text[i] == '+' ? ' ' : text[i];
        }
    }
    return out;
}

std::string_view reason(int status)
{
    constexpr std::array<std::pair<int, std::string_view>, 17> reasons{{{200, "OK"}, {204, "No Content"},
        {400, "Bad Request"}, {401, "Unauthorized"}, {403, "Forbidden"}, {404, "Not Found"},
        {405, "Method Not Allowed"}, {408, "Request Timeout"}, {413, "Payload Too Large"}, {409, "Conflict"},
        {417, "Expectation Failed"}, {415, "Unsupported Media Type"}, {429, "Too Many Requests"},
        {431, "Request Header Fields Too Large"}, {500, "Internal Server Error"}, {502, "Bad Gateway"},
        {503, "Service Unavailable"}}};
    for (const auto& [code, text] : reasons) {
        if (code == status)
            return text;
    }
    return "Status";
}

} // namespace

void setTarget(Request& request, std::string_view target)
{
    const std::size_t mark = std::min(target.find('?'), target.size());
    request.path = decoded(target.substr(0, mark), false);
    request.query.clear();
    std::string_view rest = target.substr(std::min(mark + 1, target.size()));
    while (!rest.empty()) {
        const std::string_view pair = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
        const std::size_t equals = std::min(pair.find('='), pair.size());
        request.query.emplace_back(decoded(pair.substr(0, equals), true),
            decoded(pair.substr(std::min(equals + 1, pair.size())), true));
    }
}

std::string head(const Reply& reply, std::optional<std::size_t> contentLength, bool keepAlive)
{
    std::string text = "HTTP/1.1 " + std::to_string(reply.status) + ' ';
    text += reason(reply.status);
    text += "\r\nServer: fremulator\r\nContent-Type: " + reply.contentType;
    text += contentLength ? "\r\nContent-Length: " + std::to_string(*contentLength)
                          : "\r\nTransfer-Encoding: chunked";
    text += keepAlive ? "\r\nConnection: keep-alive\r\n" : "\r\nConnection: close\r\n";
    return text + reply.headers + "\r\n";
}

std::string chunkOf(const std::string& piece)
{
    std::array<char, 2 * sizeof(std::size_t)> size{};
    const char* end = std::to_chars(size.data(), size.data() + size.size(), piece.size(), 16).ptr;
    return std::string(std::as_const(size).data(), end) + "\r\n" + piece + "\r\n";
}

} // namespace emulator
