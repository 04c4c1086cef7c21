#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// One connection of a RawServer, as its script sees it.
class Peer
{
public:
    Peer(int socket, const std::atomic<bool>& stopping);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// The next request with its body; empty when the client has closed the connection.
    [[nodiscard]] std::string readRequest();
    /// Sends the bytes as they are.
    void send(std::string_view bytes);
    /// Sends an HTTP/1.1 answer with its Content-Length.
    void answer(int status, std::string_view body, std::string_view extraHeaders = {});
    /// Closes the connection in order.
    void close();
    /// Closes the connection with a TCP reset.
    void reset();
    /// Says nothing until the client gives up or the server ends.
    void hang();
    [[nodiscard]] bool isOpen() const { return socket >= 0; }

private:
    bool receive();

    int socket;
    const std::atomic<bool>& stopping;
    std::string buffer;
};

/// A server on loopback, on a free port, that does on the wire exactly what its script says and keeps every
/// request it has read. The script is called once for each request, in the thread of its connection. Ends
/// with the object.
class RawServer
{
public:
    using Script = std::function<void(Peer& peer, const std::string& request)>;

    explicit RawServer(Script script);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    [[nodiscard]] int port() const { return listeningPort; }
    /// "http://127.0.0.1:PORT".
    [[nodiscard]] std::string url() const;
    [[nodiscard]] std::vector<std::string> requests() const;
    [[nodiscard]] std::size_t connections() const;
    /// Waits until so many connections were closed by either side; false when that takes over five seconds.
    [[nodiscard]] bool waitForClosed(std::size_t count) const;

private:
    void accept();
    void serve(int socket);

    Script script;
    int listener = -1;
    int listeningPort = 0;
    std::atomic<bool> stopping = false;
    mutable std::mutex guard;
    mutable std::condition_variable changed;
    std::vector<std::string> received;
    std::size_t opened = 0;
    std::size_t closed = 0;
    std::list<std::thread> serving;
    std::thread accepting;
};
