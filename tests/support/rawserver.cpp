#include "tests/support/rawserver.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <chrono>
#include <stdexcept>
#include <utility>

using namespace std::chrono_literals;

namespace {

// How often a waiting thread looks whether the server ends.
constexpr int pollMilliseconds = 20;

std::size_t contentLength(std::string_view headers)
{
    constexpr std::string_view name = "content-length:";
    for (std::size_t i = 0; i + name.size() <= headers.size(); ++i) {
        bool same = true;
        for (std::size_t k = 0; same && k < name.size(); ++k)
            same = std::tolower(static_cast<unsigned char>(headers[i + k])) == name[k];
        if (same)
            return std::stoul(std::string(headers.substr(i + name.size())));
    }
    return 0;
}

} // namespace

Peer::Peer(int connected, const std::atomic<bool>& ending)
    : socket(connected)
    , stopping(ending)
{
}

Peer::~Peer()
{
    close();
}

bool Peer::receive()
{
    while (isOpen() && !stopping) {
        pollfd waiting{socket, POLLIN, 0};
        if (::poll(&waiting, 1, pollMilliseconds) == 0)
            continue;
        std::array<char, 65536> chunk;
        const ssize_t got = ::recv(socket, chunk.data(), chunk.size(), 0);
        if (got <= 0)
            return false;
        buffer.append(chunk.data(), static_cast<std::size_t>(got));
        return true;
    }
    return false;
}

std::string Peer::readRequest()
{
    constexpr std::string_view endOfHeaders = "\r\n\r\n";
    std::size_t headersEnd;
    while ((headersEnd = buffer.find(endOfHeaders)) == std::string::npos) {
        if (!receive())
            return {};
    }
    headersEnd += endOfHeaders.size();
    const std::size_t size = headersEnd + contentLength(std::string_view(buffer).substr(0, headersEnd));
    while (buffer.size() < size) {
        if (!receive())
            return {};
    }
    std::string request = buffer.substr(0, size);
    buffer.erase(0, size);
    return request;
}

void Peer::send(std::string_view bytes)
{
    while (isOpen() && !bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void Peer::answer(int status, std::string_view body, std::string_view extraHeaders)
{
    std::string text = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Type: application/json\r\n";
    text += extraHeaders;
    text += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    text += body;
    send(text);
}

void Peer::close()
{
    if (isOpen())
        ::close(std::exchange(socket, -1));
}

void Peer::reset()
{
    const linger now{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    close();
}

void Peer::hang()
{
    while (receive()) {
    }
}

RawServer::RawServer(Script what)
    : script(std::move(what))
{
    listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || ::bind(listener, generic, size) != 0 || ::listen(listener, 128) != 0 ||
        ::getsockname(listener, generic, &size) != 0)
        throw std::runtime_error("cannot listen on loopback");
    listeningPort = ntohs(address.sin_port);
    accepting = std::thread([this] { accept(); });
}

RawServer::~RawServer()
{
    stopping = true;
    accepting.join();
    for (std::thread& thread : serving)
        thread.join();
    ::close(listener);
}

std::string RawServer::url() const
{
    return "http://127.0.0.1:" + std::to_string(listeningPort);
}

std::vector<std::string> RawServer::requests() const
{
    const std::lock_guard lock(guard);
    return received;
}

std::size_t RawServer::connections() const
{
    const std::lock_guard lock(guard);
    return opened;
}

bool RawServer::waitForClosed(std::size_t count) const
{
    std::unique_lock lock(guard);
    return changed.wait_for(lock, 5s, [&] { return closed >= count; });
}

void RawServer::accept()
{
    while (!stopping) {
        pollfd waiting{listener, POLLIN, 0};
        if (::poll(&waiting, 1, pollMilliseconds) <= 0)
            continue;
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            continue;
        const std::lock_guard lock(guard);
        ++opened;
        serving.emplace_back([this, socket] { serve(socket); });
    }
}

void RawServer::serve(int socket)
{
    Peer peer(socket, stopping);
    for (;;) {
        const std::string request = peer.readRequest();
        if (request.empty())
            break;
        {
            const std::lock_guard lock(guard);
            received.push_back(request);
        }
        script(peer, request);
        if (!peer.isOpen())
            break;
    }
    peer.close();
    const std::lock_guard lock(guard);
    ++closed;
    changed.notify_all();
}
