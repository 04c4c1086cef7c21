#pragma once

#include "tests/support/authority.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// One connection of a RawServer, as its script sees it.
class Peer
{
public:
    /// With a context, speaks TLS once secure() has been called.
    Peer(int socket, const std::atomic<bool>& stopping, SslContext tls);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// Agrees on TLS; true at once without a context.
    [[nodiscard]] bool secure();
    /// The next request with its body; empty when the client has closed the connection.
    [[nodiscard]] std::string readRequest();
    /// So many bytes; fewer when the client has closed the connection.
    [[nodiscard]] std::string readBytes(std::size_t count);
    /// Sends the bytes as they are.
    void send(std::string_view bytes);
    /// Sends the bytes one by one, each after the pause, until the client gives up.
    void drip(std::string_view bytes, std::chrono::milliseconds pause);
    /// Sends an HTTP/1.1 answer with its Content-Length.
    void answer(int status, std::string_view body, std::string_view extraHeaders = {});
    /// Sends the answer and closes the connection in order; the two leave together.
    void answerAndClose(int status, std::string_view body, std::string_view extraHeaders = {});
    /// Closes the connection in order.
    void close();
    /// Closes the connection with a TCP reset.
    void reset();
    /// Says nothing until the client gives up or the server ends.
    void hang();
    [[nodiscard]] bool isOpen() const { return socket >= 0; }
    /// Every byte that has arrived, decrypted.
    [[nodiscard]] const std::string& everything() const { return arrived; }

private:
    struct FreeSsl
    {
        void operator()(struct ssl_st* object) const;
    };

    bool receive();
    long receiveSome(char* to, std::size_t room);
    long sendSome(std::string_view bytes);

    int socket;
    const std::atomic<bool>& stopping;
    SslContext context;
    std::unique_ptr<struct ssl_st, FreeSsl> ssl;
    std::string buffer;
    std::string arrived;
};

/// A server on loopback, on a free port, that does on the wire exactly what its script says and keeps every
/// request it has read. The script is called once for each request, in the thread of its connection. Ends
/// with the object.
class RawServer
{
public:
    using Script = std::function<void(Peer& peer, const std::string& request)>;

    explicit RawServer(Script script, SslContext tls = {});
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    [[nodiscard]] int port() const { return listeningPort; }
    /// "http://127.0.0.1:PORT", or "https://localhost:PORT" with TLS.
    [[nodiscard]] std::string url() const;
    [[nodiscard]] std::vector<std::string> requests() const;
    [[nodiscard]] std::size_t connections() const;
    /// Every byte of the connections that are closed, decrypted.
    [[nodiscard]] std::string everything() const;
    /// Waits until so many connections were closed by either side; false when that takes over five seconds.
    [[nodiscard]] bool waitForClosed(std::size_t count) const;
    /// From now on new connections are refused; those that are open go on. May be called from the script.
    void refuseFurther();

private:
    void accept();
    void serve(int socket);

    Script script;
    SslContext tls;
    int listener = -1;
    int listeningPort = 0;
    std::atomic<bool> stopping = false;
    std::atomic<bool> refusing = false;
    mutable std::mutex guard;
    mutable std::condition_variable changed;
    std::vector<std::string> received;
    std::string arrived;
    std::size_t opened = 0;
    std::size_t closed = 0;
    std::list<std::thread> serving;
    std::thread accepting;
};
