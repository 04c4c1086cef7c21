#include "bench/responder/ceiling.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace responder {

namespace {

constexpr int rounds = 5;
// More than there are cores, so that the responder always has a request to answer.
constexpr int connections = 8;
constexpr int exchangesPerConnection = 5000;
constexpr std::string_view request =
    "POST /v4/g/sell HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 2\r\n\r\n{}";

class Connection
{
public:
    explicit Connection(int port)
        : handle(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        if (connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("cannot connect to itself");
        const int on = 1;
        setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { close(handle); }

    void exchange()
    {
        std::array<char, 4096> answer{};
        if (send(handle, request.data(), request.size(), MSG_NOSIGNAL) < 0 ||
            recv(handle, answer.data(), answer.size(), 0) <= 0)
            throw std::runtime_error("no answer from itself");
    }

private:
    int handle;
};

double secondsOfRound(int port)
{
    using Clock = std::chrono::steady_clock;
    std::vector<std::unique_ptr<Connection>> open;
    for (int i = 0; i < connections; ++i)
        open.push_back(std::make_unique<Connection>(port));
    const auto start = Clock::now();
    std::vector<std::future<void>> running;
    for (const auto& connection : open) {
        running.push_back(std::async(std::launch::async, [&mine = *connection] {
            for (int i = 0; i < exchangesPerConnection; ++i)
                mine.exchange();
        }));
    }
    for (auto& each : running)
        each.get();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

double exchangesPerSecond(int port)
{
    double best = 0;
    for (int round = 0; round < rounds; ++round)
        best = std::max(best, connections * exchangesPerConnection / secondsOfRound(port));
    return best;
}

} // namespace responder
