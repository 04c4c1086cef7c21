#pragma once

#include <condition_variable>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A program on this machine that gets called: notes every request and answers all in the same way.
class Receiver
{
public:
    /// `answer` is sent as it is; if empty, connections are held open without an answer.
    explicit Receiver(
        std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nOK", bool ipv6 = false);
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    [[nodiscard]] std::uint16_t port() const { return number; }
    [[nodiscard]] std::string url(
        const std::string& host = "127.0.0.1", const std::string& target = "/done") const
    {
        return "http://" + host + ":" + std::to_string(number) + target;
    }

    /// The requests so far, once there are this many. Throws if they do not arrive.
    [[nodiscard]] std::vector<std::string> requests(std::size_t count);
    /// How many connections were open at the same time, at most.
    [[nodiscard]] std::size_t mostAtOnce();

private:
    void accept();
    void attend(int connection);

    const std::string answer;
    // Set by what makes the listener.
    std::uint16_t number = 0;
    int listener = -1;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::string> seen;
    std::size_t most = 0;
    std::list<int> connections;
    std::list<std::thread> threads;
    std::thread acceptor;
};
