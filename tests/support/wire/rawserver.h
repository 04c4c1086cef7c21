#pragma once

#include "tests/support/wire/authority.h"

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

    /// Does the TLS handshake; without a context, there is nothing to do. Returns whether it succeeded.
    [[nodiscard]] bool secure();
    /// The next request with its body; empty when the client has closed the connection.
    [[nodiscard]] std::string readRequest();
    /// The next bytes; fewer than asked for when the client has closed the connection.
    [[nodiscard]] std::string readBytes(std::size_t count);
    /// Sends the bytes as they are.
    void send(std::string_view bytes);
    /// Sends the bytes one by one, each after the pause, until the client gives up.
    void drip(std::string_view bytes, std::chrono::milliseconds pause);
    /// Sends an HTTP/1.1 answer with a Content-Length.
    void answer(int status, std::string_view body, std::string_view extraHeaders = {});
    /// Sends the answer and closes the connection in order, in one packet where possible.
    void answerAndClose(int status, std::string_view body, std::string_view extraHeaders = {});
    /// Closes the connection in order.
    void close();
    /// Closes the connection with a TCP reset.
    void reset();
    /// Stays silent until the client gives up or the server ends.
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

/// A server on a free port of loopback that does on the wire exactly what its script says and records every
/// request. The script is called once per request, in the thread of its connection. Ends with the object.
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
    /// Every byte that arrived on the closed connections, decrypted.
    [[nodiscard]] std::string everything() const;
    /// Waits until this many connections have been closed by either side; false after five seconds.
    [[nodiscard]] bool waitForClosed(std::size_t count) const;
    /// From now on refuses new connections; open ones stay. May be called from the script.
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
