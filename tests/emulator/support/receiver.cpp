#include "tests/emulator/support/receiver.h"

#include <algorithm>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// The body of a request with a Content-Length has arrived as a whole.
bool isWhole(const std::string& request)
{
    const std::size_t end = request.find("\r\n\r\n");
    const std::string name = "Content-Length: ";
    const std::size_t at = request.find(name);
    if (end == std::string::npos || at == std::string::npos)
        return false;
    return request.size() >= end + 4 + std::stoul(request.substr(at + name.size()));
}

// The caller may have closed it before its thread here has noticed.
bool isOpen(int connection)
{
    pollfd waiting{.fd = connection, .events = POLLRDHUP, .revents = 0};
    return ::poll(&waiting, 1, 0) == 0;
}

int listenOn(bool ipv6, std::uint16_t& port)
{
    const int handle = ::socket(ipv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in6 wide{};
    sockaddr_in narrow{};
    wide.sin6_family = AF_INET6;
    wide.sin6_addr = in6addr_loopback;
    narrow.sin_family = AF_INET;
    narrow.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* address = ipv6 ? reinterpret_cast<sockaddr*>(&wide) : reinterpret_cast<sockaddr*>(&narrow);
    socklen_t length = ipv6 ? sizeof wide : sizeof narrow;
    if (::bind(handle, address, length) != 0 || ::listen(handle, 64) != 0 ||
        ::getsockname(handle, address, &length) != 0)
        throw std::runtime_error("cannot listen");
    port = ntohs(ipv6 ? wide.sin6_port : narrow.sin_port);
    return handle;
}

} // namespace

Receiver::Receiver(std::string usedAnswer, bool ipv6)
    : answer(std::move(usedAnswer))
    , listener(listenOn(ipv6, number))
    , acceptor([this] { accept(); })
{
}

Receiver::~Receiver()
{
    ::shutdown(listener, SHUT_RDWR);
    acceptor.join();
    {
        const std::lock_guard lock(mutex);
        for (const int connection : connections)
            ::shutdown(connection, SHUT_RDWR);
    }
    for (std::thread& thread : threads)
        thread.join();
    ::close(listener);
}

std::vector<std::string> Receiver::requests(std::size_t count)
{
    std::unique_lock lock(mutex);
    if (!arrived.wait_for(lock, std::chrono::seconds(20), [&] { return seen.size() >= count; }))
        throw std::runtime_error("nobody called");
    return seen;
}

std::size_t Receiver::mostAtOnce()
{
    const std::lock_guard lock(mutex);
    return most;
}

void Receiver::accept()
{
    for (;;) {
        const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        const std::lock_guard lock(mutex);
        connections.push_back(connection);
        most = std::max(most, static_cast<std::size_t>(std::ranges::count_if(connections, isOpen)));
        threads.emplace_back([this, connection] { attend(connection); });
    }
}

void Receiver::attend(int connection)
{
    std::string request;
    char bytes[4096];
    bool noted = false;
    for (;;) {
        const ssize_t count = ::recv(connection, bytes, sizeof bytes, 0);
        if (count <= 0)
            break;
        request.append(bytes, static_cast<std::size_t>(count));
        if (noted || !isWhole(request))
            continue;
        noted = true;
        {
            const std::lock_guard lock(mutex);
            seen.push_back(request);
            arrived.notify_all();
        }
        if (!answer.empty())
            ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
    }
    const std::lock_guard lock(mutex);
    connections.remove(connection);
    ::close(connection);
}
