#include "tests/emulator/support/rawclient.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

std::size_t contentLength(const std::string& head)
{
    const std::string name = "Content-Length: ";
    const std::size_t at = head.find(name);
    return at == std::string::npos ? 0 : std::stoul(head.substr(at + name.size()));
}

// How many bytes of `text` are a body in chunks; nothing as long as its end is missing. Adds the pieces to
// `body`.
std::optional<std::size_t> chunksIn(const std::string& text, std::string& body)
{
    body.clear();
    for (std::size_t at = 0;;) {
        const std::size_t line = text.find("\r\n", at);
        if (line == std::string::npos)
            return std::nullopt;
        const std::size_t size = std::stoul(text.substr(at, line - at), nullptr, 16);
        at = line + 2 + size + 2;
        if (at > text.size())
            return std::nullopt;
        if (size == 0)
            return at;
        body += text.substr(line + 2, size);
    }
}

} // namespace

RawClient::RawClient(std::uint16_t port, const char* from)
    : handle(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    ::inet_pton(AF_INET, from, &address.sin_addr);
    if (::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail("bind");
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        fail("connect");
}

RawClient::~RawClient()
{
    ::close(handle);
}

void RawClient::send(const std::string& bytes) const
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(handle, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0)
            fail("send");
        sent += static_cast<std::size_t>(count);
    }
}

RawClient::End RawClient::readSome(std::chrono::milliseconds patience)
{
    pollfd poll{.fd = handle, .events = POLLIN, .revents = 0};
    if (::poll(&poll, 1, static_cast<int>(patience.count())) == 0)
        return End::Open;
    std::array<char, 65536> bytes{};
    const ssize_t count = ::recv(handle, bytes.data(), bytes.size(), 0);
    if (count < 0 && errno == ECONNRESET)
        return End::Reset;
    if (count < 0)
        fail("recv");
    buffer.append(bytes.data(), static_cast<std::size_t>(count));
    return count == 0 ? End::Closed : End::Open;
}

std::optional<std::size_t> RawClient::takeBody(Answer& answer) const
{
    if (answer.head.find("Transfer-Encoding: chunked") != std::string::npos)
        return chunksIn(buffer.substr(answer.head.size()), answer.body);
    const std::size_t length = contentLength(answer.head);
    if (buffer.size() < answer.head.size() + length)
        return std::nullopt;
    answer.body = buffer.substr(answer.head.size(), length);
    return length;
}

RawClient::Answer RawClient::receive()
{
    Answer answer;
    for (;;) {
        const std::size_t end = buffer.find("\r\n\r\n");
        if (end != std::string::npos) {
            answer.head = buffer.substr(0, end + 4);
            const auto length = takeBody(answer);
            if (length) {
                answer.status = std::stoi(answer.head.substr(9, 3));
                buffer.erase(0, answer.head.size() + *length);
                return answer;
            }
        }
        const std::size_t before = buffer.size();
        answer.end = readSome(std::chrono::seconds(20));
        if (buffer.size() == before)
            throw std::runtime_error("incomplete answer: " + buffer);
    }
}

RawClient::Answer RawClient::receiveAll(std::chrono::milliseconds patience)
{
    Answer answer;
    for (bool more = true; more;) {
        const std::size_t before = buffer.size();
        answer.end = readSome(patience);
        more = answer.end == End::Open && buffer.size() > before;
    }
    const std::size_t end = buffer.find("\r\n\r\n");
    answer.head = buffer.substr(0, end == std::string::npos ? end : end + 4);
    answer.body = buffer.substr(answer.head.size());
    if (answer.head.starts_with("HTTP/1.1 "))
        answer.status = std::stoi(answer.head.substr(9, 3));
    buffer.clear();
    return answer;
}

std::string RawClient::receiveUntil(const std::string& before, const std::string& after)
{
    for (;;) {
        const std::size_t from = buffer.find(before);
        const std::size_t to = from == std::string::npos ? from : buffer.find(after, from + before.size());
        if (to != std::string::npos) {
            const std::string between = buffer.substr(from + before.size(), to - from - before.size());
            buffer.erase(0, to + after.size());
            return between;
        }
        const std::size_t had = buffer.size();
        readSome(std::chrono::seconds(20));
        if (buffer.size() == had)
            throw std::runtime_error("no " + before + " in: " + buffer);
    }
}

std::string postRequest(const std::string& path, const std::string& body, const std::string& headers)
{
    return "POST " + path +
           " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json; charset=utf-8\r\n" + headers +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string getRequest(const std::string& path, const std::string& headers)
{
    return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers + "\r\n";
}
