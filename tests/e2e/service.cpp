#include "tests/e2e/service.h"

#include <QUrl>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <stdexcept>

namespace {

Service::Call callOf(const std::string& request)
{
    if (request.starts_with("GET "))
        return Service::Call::Report;
    return request.substr(0, request.find('\n')).find("/getToken") != std::string::npos ? Service::Call::Token
                                                                                        : Service::Call::Sell;
}

using Counters = std::array<std::atomic<int>, 3>;

} // namespace

Service::Request::Request(Peer& from, const std::string& request, int port)
    : peer(from)
    , text(request)
    , emulatorPort(port)
{
}

Service::Call Service::Request::call() const
{
    return callOf(text);
}

void Service::Request::passAndHangUp()
{
    std::ignore = forwarded();
    peer.close();
}

// The whole answer of the emulator, asked on a connection that ends with it.
std::string Service::Request::forwarded() const
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(emulatorPort));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        throw std::runtime_error("no emulator");
    }
    std::string request = text;
    request.insert(request.find("\r\n") + 2, "Connection: close\r\n");
    std::ignore = ::send(socket, request.data(), request.size(), MSG_NOSIGNAL);
    std::string answer;
    char part[65536];
    for (ssize_t got = 0; (got = ::recv(socket, part, sizeof part, 0)) > 0;)
        answer.append(part, static_cast<std::size_t>(got));
    ::close(socket);
    return answer;
}

Service::Service(const Script& script, const QString& emulatorUrl)
    : server([script, port = QUrl(emulatorUrl).port(), counters = std::make_shared<Counters>()](
                 Peer& peer, const std::string& text) {
        Request request(peer, text, port);
        const int number = ++(*counters)[static_cast<std::size_t>(request.call())];
        script(request, number);
    })
{
}

QString Service::url() const
{
    return QString::fromStdString(server.url()) + QStringLiteral("/possystem/v4/");
}

int Service::count(Call call) const
{
    const auto requests = server.requests();
    return static_cast<int>(std::count_if(
        requests.begin(), requests.end(), [&](const std::string& text) { return callOf(text) == call; }));
}
