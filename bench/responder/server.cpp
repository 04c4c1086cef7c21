#include "bench/responder/server.h"

#include "bench/responder/certificate.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace responder {

namespace {

constexpr std::size_t roomForRead = 64 * 1024;
constexpr int threadsInWaiting = 4;

std::string httpAnswer(const std::string& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string fileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

struct PlainWire
{
    int socket;

    [[nodiscard]] ssize_t read(char* to, std::size_t room) const { return recv(socket, to, room, 0); }
    [[nodiscard]] bool write(std::string_view text) const
    {
        return send(socket, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }
};

struct TlsWire
{
    SSL* session;

    [[nodiscard]] ssize_t read(char* to, std::size_t room) const
    {
        return SSL_read(session, to, static_cast<int>(room));
    }
    [[nodiscard]] bool write(std::string_view text) const
    {
        return SSL_write(session, text.data(), static_cast<int>(text.size())) > 0;
    }
};

std::size_t contentLength(std::string_view head)
{
    static constexpr std::string_view name = "\r\ncontent-length:";
    const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    const auto found = std::search(head.begin(), head.end(), name.begin(), name.end(), same);
    if (found == head.end())
        return 0;
    auto from = std::find_if(found + name.size(), head.end(), [](char c) { return c != ' '; });
    std::size_t length = 0;
    std::from_chars(std::to_address(from), head.data() + head.size(), length);
    return length;
}

} // namespace

Server::Server(const Options& options)
    : record(options.record)
    , listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , token(httpAnswer(fileText(options.answers + "/token.json")))
    , accepted(httpAnswer(fileText(options.answers + "/accepted.json")))
    , done(httpAnswer(fileText(options.answers + "/done.json")))
    , tls(nullptr, &SSL_CTX_free)
{
    if (!options.caFile.empty())
        tls.reset(contextWithNewCertificate(options.caFile));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener, generic, size) != 0 || listen(listener, SOMAXCONN) != 0 ||
        getsockname(listener, generic, &size) != 0)
        throw std::runtime_error("cannot listen on loopback");
    listeningPort = ntohs(address.sin_port);
}

Server::~Server()
{
    close(listener);
}

void Server::start()
{
    for (; waiting < threadsInWaiting; ++waiting)
        std::thread([this] { acceptAndServe(); }).detach();
}

void Server::acceptAndServe()
{
    for (;;) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        --waiting;
        start();
        if (socket >= 0)
            serve(socket);
        ++waiting;
    }
}

void Server::serve(int socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (tls) {
        const std::unique_ptr<SSL, void (*)(SSL*)> session(SSL_new(tls.get()), &SSL_free);
        SSL_set_fd(session.get(), socket);
        TlsWire wire{session.get()};
        if (SSL_accept(session.get()) == 1)
            converse(wire);
    } else {
        PlainWire wire{socket};
        converse(wire);
    }
    close(socket);
}

template <typename Wire>
void Server::converse(Wire& wire)
{
    std::string buffer;
    std::size_t filled = 0;
    const auto more = [&] {
        if (buffer.size() - filled < roomForRead)
            buffer.resize(buffer.size() + roomForRead);
        const ssize_t part = wire.read(buffer.data() + filled, buffer.size() - filled);
        filled += static_cast<std::size_t>(std::max<ssize_t>(part, 0));
        return part > 0;
    };
    for (;;) {
        std::size_t headSize = std::string::npos;
        while ((headSize = std::string_view(buffer.data(), filled).find("\r\n\r\n")) == std::string::npos) {
            if (!more())
                return;
        }
        const std::size_t start = headSize + 4;
        const std::size_t length = contentLength({buffer.data(), headSize});
        while (filled < start + length) {
            if (!more())
                return;
        }
        const std::string_view answer = answerTo({buffer.data(), headSize}, {buffer.data() + start, length});
        if (!wire.write(answer))
            return;
        std::copy(buffer.data() + start + length, buffer.data() + filled, buffer.data());
        filled -= start + length;
    }
}

std::string_view Server::answerTo(std::string_view head, std::string_view body)
{
    const std::string_view line = head.substr(0, head.find("\r\n"));
    if (line.find("/report/") != std::string_view::npos)
        return done;
    if (line.find("/getToken") != std::string_view::npos)
        return token;
    if (record) {
        const std::lock_guard lock(guard);
        // One connection at a time asks for what was recorded, so the text outlives the answer.
        if (line.find("/last") != std::string_view::npos)
            return lastReceipt;
        lastReceipt = httpAnswer(std::string(body));
    }
    return accepted;
}

} // namespace responder
