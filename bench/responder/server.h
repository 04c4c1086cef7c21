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
};

/// The service's side of an exchange and nothing more: answers each request with a text prepared in advance,
/// chosen by the path. Listens on a free port of loopback and runs a thread for each connection.
///
/// GET /last returns the first receipt that has arrived since the previous GET /last, so that what a
/// contender sends can be compared before it is timed.
class Server
{
public:
    /// Listens; throws std::runtime_error when that fails.
    explicit Server(const Options& options);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] int port() const { return listeningPort; }
    /// Accepts connections until the process ends.
    [[noreturn]] void run();

private:
    void serve(int socket);
    void converse(BIO* wire);
    [[nodiscard]] std::string_view answerTo(std::string_view path, std::string_view body);

    int listener = -1;
    int listeningPort = 0;
    std::string token;
    std::string accepted;
    std::string done;
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> tls;
    std::atomic<bool> recording = false;
    std::mutex guard;
    std::string recorded;
    std::string last;
};

} // namespace responder
