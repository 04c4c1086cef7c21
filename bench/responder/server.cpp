#include "bench/responder/server.h"

#include "bench/responder/certificate.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <utility>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace responder {

namespace {

constexpr std::size_t roomForRead = 64 * 1024;

std::string httpAnswer(const std::string& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string answerFrom(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + name);
    return httpAnswer({std::istreambuf_iterator<char>(file), {}});
}

std::size_t contentLength(std::string_view head)
{
    static constexpr std::string_view name = "\r\ncontent-length:";
    const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    const auto found = std::search(head.begin(), head.end(), name.begin(), name.end(), same);
    if (found == head.end())
        return 0;
    const auto from = std::find_if(found + name.size(), head.end(), [](char c) { return c != ' '; });
    std::size_t length = 0;
    std::from_chars(std::to_address(from), head.data() + head.size(), length);
    return length;
}

} // namespace

Server::Server(const Options& options)
    : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , token(answerFrom(options.answers + "/token.json"))
    , accepted(answerFrom(options.answers + "/accepted.json"))
    , done(answerFrom(options.answers + "/done.json"))
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

void Server::run()
{
    for (;;) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0)
            std::thread([this, socket] { serve(socket); }).detach();
    }
}

void Server::serve(int socket)
{
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    BIO* wire = BIO_new_socket(socket, BIO_CLOSE);
    if (tls)
        wire = BIO_push(BIO_new_ssl(tls.get(), 0), wire);
    converse(wire);
    BIO_free_all(wire);
}

void Server::converse(BIO* wire)
{
    std::string buffer;
    std::size_t filled = 0;
    const auto more = [&] {
        if (buffer.size() - filled < roomForRead)
            buffer.resize(buffer.size() + roomForRead);
        const int part = BIO_read(wire, buffer.data() + filled, static_cast<int>(buffer.size() - filled));
        filled += static_cast<std::size_t>(std::max(part, 0));
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
        const std::string_view head(buffer.data(), headSize);
        const std::string_view answer =
            answerTo(head.substr(0, head.find("\r\n")), {buffer.data() + start, length});
        if (BIO_write(wire, answer.data(), static_cast<int>(answer.size())) <= 0)
            return;
        std::copy(buffer.data() + start + length, buffer.data() + filled, buffer.data());
        filled -= start + length;
    }
}

std::string_view Server::answerTo(std::string_view path, std::string_view body)
{
    if (path.find("/report/") != std::string_view::npos)
        return done;
    if (path.find("/getToken") != std::string_view::npos)
        return token;
    if (path.find("/last") != std::string_view::npos) {
        // One client at a time asks for it, so the text outlives the answer.
        const std::lock_guard lock(guard);
        last = httpAnswer(std::exchange(recorded, {}));
        recording = true;
        return last;
    }
    if (recording) {
        const std::lock_guard lock(guard);
        recorded = body;
        recording = false;
    }
    return accepted;
}

} // namespace responder
