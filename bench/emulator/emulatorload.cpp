// Sells through many kept connections at once and says how many sells a second were answered. Every answer is
// checked: only HTTP 200 with a uuid counts, anything else ends the run with an error.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;
using Time = std::chrono::steady_clock::time_point;

int connectTo(const std::uint16_t port)
{
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot connect to port " + std::to_string(port));
    const int on = 1;
    ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return handle;
}

void sendAll(const int handle, const std::string& bytes)
{
    if (::send(handle, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("cannot send");
}

/// Whether `answer` is a whole one.
bool whole(const std::string& answer)
{
    const std::size_t head = answer.find("\r\n\r\n");
    const std::size_t length = answer.find("Content-Length: ");
    return head != std::string::npos && length < head &&
           answer.size() == head + 4 + std::stoul(answer.substr(length + 16));
}

std::string post(const std::string& path, const std::string& headers, const std::string& body)
{
    return "POST /possystem/v4/" + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers +
           "Content-Type: application/json; charset=utf-8\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

std::string takeToken(const std::uint16_t port)
{
    const int handle = connectTo(port);
    sendAll(handle, post("getToken", "", R"({"login":"test","pass":"test"})"));
    std::string answer(4096, '\0');
    answer.resize(
        static_cast<std::size_t>(std::max<ssize_t>(0, ::recv(handle, answer.data(), answer.size(), 0))));
    ::close(handle);
    return Json::parse(answer.substr(answer.find("\r\n\r\n") + 4))["token"];
}

/// A receipt of three lines, its id left to be put in.
Json receipt()
{
    const Json line{{"name", "Молоко 3,2 %, пастеризованное"}, {"price", 75.25}, {"quantity", 2},
        {"sum", 150.5}, {"payment_method", "full_payment"}, {"payment_object", "commodity"},
        {"vat", {{"type", "vat10"}}}};
    return {{"timestamp", "01.03.2026 10:00:00"}, {"external_id", ""},
        {"receipt", {{"client", {{"email", "buyer@example.com"}}},
                        {"company", {{"email", "shop@example.com"}, {"sno", "osn"}, {"inn", "7700000000"},
                                        {"payment_address", "https://shop.example"}}},
                        {"items", {line, line, line}},
                        {"payments", Json::array({{{"type", 1}, {"sum", 451.5}}})}, {"total", 451.5}}}};
}

struct Connection
{
    int handle = -1;
    std::string answer{};
    Time sent{};
};

class Load
{
public:
    Load(const std::uint16_t port, const std::size_t connections, const std::size_t sells)
        : headers_("Token: " + takeToken(port) + "\r\n")
        , body_(receipt())
        , sells_(sells)
        , poll_(::epoll_create1(0))
        , connections_(connections)
    {
        for (std::size_t i = 0; i < connections_.size(); ++i) {
            connections_[i].handle = connectTo(port);
            epoll_event event{.events = EPOLLIN, .data = {.u64 = i}};
            ::epoll_ctl(poll_, EPOLL_CTL_ADD, connections_[i].handle, &event);
        }
    }

    void run()
    {
        const Time begin = std::chrono::steady_clock::now();
        for (Connection& connection : connections_)
            sellNext(connection);
        while (latencies_.size() < sells_) {
            epoll_event events[256];
            const int count = ::epoll_wait(poll_, events, 256, 10'000);
            if (count <= 0)
                throw std::runtime_error("no answer for ten seconds");
            for (int i = 0; i < count; ++i)
                read(connections_[events[i].data.u64]);
        }
        report(std::chrono::steady_clock::now() - begin);
    }

private:
    void sellNext(Connection& connection)
    {
        if (started_ == sells_)
            return;
        body_["external_id"] = "load-" + std::to_string(++started_);
        const std::string request = post("test/sell", headers_, body_.dump());
        connection.answer.clear();
        connection.sent = std::chrono::steady_clock::now();
        sendAll(connection.handle, request);
    }

    void read(Connection& connection)
    {
        char bytes[4096];
        const ssize_t count = ::recv(connection.handle, bytes, sizeof bytes, 0);
        if (count <= 0)
            throw std::runtime_error("a connection was closed");
        connection.answer.append(bytes, static_cast<std::size_t>(count));
        if (!whole(connection.answer))
            return;
        if (!connection.answer.starts_with("HTTP/1.1 200") ||
            connection.answer.find("\"uuid\"") == std::string::npos)
            throw std::runtime_error("not a registered receipt: " + connection.answer);
        latencies_.push_back(std::chrono::steady_clock::now() - connection.sent);
        sellNext(connection);
    }

    void report(const std::chrono::duration<double> time)
    {
        std::ranges::sort(latencies_);
        const auto milliseconds = [this](const double share) {
            const auto index = static_cast<std::size_t>(share * static_cast<double>(latencies_.size() - 1));
            return std::chrono::duration<double, std::milli>(latencies_[index]).count();
        };
        std::printf("%zu sells over %zu connections in %.2f s: %.0f a second, median %.1f ms, 99th %.1f ms\n",
            latencies_.size(), connections_.size(), time.count(),
            static_cast<double>(latencies_.size()) / time.count(), milliseconds(0.5), milliseconds(0.99));
    }

    std::string headers_;
    Json body_;
    std::size_t sells_;
    std::size_t started_ = 0;
    int poll_;
    std::vector<Connection> connections_;
    std::vector<std::chrono::steady_clock::duration> latencies_;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: emulatorload PORT CONNECTIONS SELLS\n";
        return 1;
    }
    try {
        Load load(static_cast<std::uint16_t>(std::stoi(argv[1])), std::stoul(argv[2]), std::stoul(argv[3]));
        load.run();
    } catch (const std::exception& error) {
        std::cerr << "emulatorload: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
