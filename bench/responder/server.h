#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include <openssl/types.h>

namespace responder {

struct Options
{
    /// Folder of the bodies token.json, accepted.json and done.json.
    std::string answers;
    /// Where to write the certificate to trust; empty for plain HTTP.
    std::string caFile;
    /// Keep the last receipt for /last; costs a lock and a copy a request.
    bool record = false;
};

/// The service's side of an exchange and nothing more: answers every request with a text made beforehand,
/// chosen by the path. A thread for each connection, one more of them waiting for the next, so that no thread
/// is started while a client waits; TCP_NODELAY, loopback, a free port.
class Server
{
public:
    /// Listens; throws std::runtime_error when that fails.
    explicit Server(const Options& options);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] int port() const { return listeningPort; }
    /// Starts to accept connections; goes on until the process ends.
    void start();

private:
    [[noreturn]] void acceptAndServe();
    void serve(int socket);
    template <typename Wire>
    void converse(Wire& wire);
    [[nodiscard]] std::string_view answerTo(std::string_view head, std::string_view body);

    bool record;
    int listener = -1;
    int listeningPort = 0;
    std::atomic<int> waiting = 0;
    std::string token;
    std::string accepted;
    std::string done;
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> tls;
    std::mutex guard;
    std::string lastReceipt;
};

} // namespace responder
