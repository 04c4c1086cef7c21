#include "bench/responder/ceiling.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace responder {

namespace {

constexpr int rounds = 5;
constexpr int exchangesPerRound = 5000;
constexpr std::string_view request =
    "POST /v4/g/sell HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 2\r\n\r\n{}";

int connectTo(int port)
{
    const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot connect to itself");
    const int on = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return handle;
}

void exchange(int handle)
{
    std::array<char, 4096> answer{};
    if (send(handle, request.data(), request.size(), MSG_NOSIGNAL) < 0 ||
        recv(handle, answer.data(), answer.size(), 0) <= 0)
        throw std::runtime_error("no answer from itself");
}

} // namespace

double exchangesPerSecond(int port)
{
    using Clock = std::chrono::steady_clock;
    const int handle = connectTo(port);
    double best = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        for (int i = 0; i < exchangesPerRound; ++i)
            exchange(handle);
        best =
            std::max(best, exchangesPerRound / std::chrono::duration<double>(Clock::now() - start).count());
    }
    close(handle);
    return best;
}

} // namespace responder
