#include "tests/support/wire/rawserver.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <utility>

using namespace std::chrono_literals;

namespace {

// How often a waiting thread checks whether the server is ending.
constexpr int pollMilliseconds = 20;

std::size_t contentLength(std::string_view headers)
{
    constexpr std::string_view name = "content-length:";
    for (std::size_t i = 0; i + name.size() <= headers.size(); ++i) {
        bool same = true;
        for (std::size_t k = 0; same && k < name.size(); ++k)
            same = std::tolower(static_cast<unsigned char>(headers[i + k])) == name[k];
        if (same)
            return std::stoul(std::string(headers.substr(i + name.size())));
    }
    return 0;
}

} // namespace

void Peer::FreeSsl::operator()(SSL* object) const
{
    SSL_free(object);
}

Peer::Peer(int connected, const std::atomic<bool>& ending, SslContext tls)
    : socket(connected)
    , stopping(ending)
    , context(std::move(tls))
{
    const timeval pause{0, pollMilliseconds * 1000};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause);
    ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &pause, sizeof pause);
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

Peer::~Peer()
{
    close();
}

bool Peer::secure()
{
    if (!context)
        return true;
    ssl.reset(SSL_new(context.get()));
    SSL_set_fd(ssl.get(), socket);
    while (!stopping) {
        const int done = SSL_accept(ssl.get());
        if (done == 1)
            return true;
        const int error = SSL_get_error(ssl.get(), done);
        if (error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE)
            return false;
    }
    return false;
}

// Both return the number of bytes, 0 at the end of the connection and a negative number for "not now".
long Peer::receiveSome(char* to, std::size_t room)
{
    if (ssl) {
        const int got = SSL_read(ssl.get(), to, static_cast<int>(room));
        return got > 0 ? got : SSL_get_error(ssl.get(), got) == SSL_ERROR_WANT_READ ? -1 : 0;
    }
    const ssize_t got = ::recv(socket, to, room, 0);
    return got >= 0 ? got : errno == EAGAIN ? -1 : 0;
}

long Peer::sendSome(std::string_view bytes)
{
    if (ssl) {
        const int sent = SSL_write(ssl.get(), bytes.data(), static_cast<int>(bytes.size()));
        return sent > 0 ? sent : SSL_get_error(ssl.get(), sent) == SSL_ERROR_WANT_WRITE ? -1 : 0;
    }
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return sent >= 0 ? sent : errno == EAGAIN ? -1 : 0;
}

bool Peer::receive()
{
    while (isOpen() && !stopping) {
        std::array<char, 16384> chunk;
        const long got = receiveSome(chunk.data(), chunk.size());
        if (got < 0)
            continue;
        if (got == 0)
            return false;
        buffer.append(chunk.data(), static_cast<std::size_t>(got));
        arrived.append(chunk.data(), static_cast<std::size_t>(got));
        return true;
    }
    return false;
}

std::string Peer::readRequest()
{
    constexpr std::string_view endOfHeaders = "\r\n\r\n";
    std::size_t headersEnd;
    while ((headersEnd = buffer.find(endOfHeaders)) == std::string::npos) {
        if (!receive())
            return {};
    }
    headersEnd += endOfHeaders.size();
    const std::size_t size = headersEnd + contentLength(std::string_view(buffer).substr(0, headersEnd));
    while (buffer.size() < size) {
        if (!receive())
            return {};
    }
    std::string request = buffer.substr(0, size);
    buffer.erase(0, size);
    return request;
}

std::string Peer::readBytes(std::size_t count)
{
    while (buffer.size() < count && receive()) {
    }
    std::string bytes = buffer.substr(0, count);
    buffer.erase(0, bytes.size());
    return bytes;
}

void Peer::send(std::string_view bytes)
{
    while (isOpen() && !stopping && !bytes.empty()) {
        const long sent = sendSome(bytes);
        if (sent == 0)
            return;
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void Peer::drip(std::string_view bytes, std::chrono::milliseconds pause)
{
    for (const char byte : bytes) {
        pollfd gone{socket, POLLRDHUP, 0};
        if (stopping || ::poll(&gone, 1, static_cast<int>(pause.count())) > 0)
            return;
        send({&byte, 1});
    }
}

void Peer::answer(int status, std::string_view body, std::string_view extraHeaders)
{
    std::string text = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Type: application/json\r\n";
    text += extraHeaders;
    text += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    text += body;
    send(text);
}

void Peer::answerAndClose(int status, std::string_view body, std::string_view extraHeaders)
{
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_CORK, &on, sizeof on);
    answer(status, body, extraHeaders);
    close();
}

void Peer::close()
{
    if (ssl && isOpen())
        SSL_shutdown(ssl.get());
    ssl.reset();
    if (isOpen())
        ::close(std::exchange(socket, -1));
}

void Peer::reset()
{
    const linger now{1, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    ::close(std::exchange(socket, -1));
}

void Peer::hang()
{
    while (receive()) {
    }
}

RawServer::RawServer(Script what, SslContext context)
    : script(std::move(what))
    , tls(std::move(context))
{
    listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || ::bind(listener, generic, size) != 0 || ::listen(listener, 128) != 0 ||
        ::getsockname(listener, generic, &size) != 0)
        throw std::runtime_error("cannot listen on loopback");
    listeningPort = ntohs(address.sin_port);
    accepting = std::thread([this] { accept(); });
}

RawServer::~RawServer()
{
    stopping = true;
    accepting.join();
    for (std::thread& thread : serving)
        thread.join();
    ::close(listener);
}

std::string RawServer::url() const
{
    return (tls ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(listeningPort);
}

std::vector<std::string> RawServer::requests() const
{
    const std::lock_guard lock(guard);
    return received;
}

std::size_t RawServer::connections() const
{
    const std::lock_guard lock(guard);
    return opened;
}

std::string RawServer::everything() const
{
    const std::lock_guard lock(guard);
    return arrived;
}

bool RawServer::waitForClosed(std::size_t count) const
{
    std::unique_lock lock(guard);
    return changed.wait_for(lock, 5s, [&] { return closed >= count; });
}

void RawServer::refuseFurther()
{
    refusing = true;
    ::shutdown(listener, SHUT_RDWR);
}

void RawServer::accept()
{
    // OpenSSL writes without MSG_NOSIGNAL. Blocked only in the server's threads, so that a client that the
    // signal kills is noticed; the threads of the connections inherit the mask.
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    while (!stopping && !refusing) {
        pollfd waiting{listener, POLLIN, 0};
        if (::poll(&waiting, 1, pollMilliseconds) <= 0)
            continue;
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            continue;
        const std::lock_guard lock(guard);
        ++opened;
        serving.emplace_back([this, socket] { serve(socket); });
    }
}

void RawServer::serve(int socket)
{
    Peer peer(socket, stopping, tls);
    const bool secured = peer.secure();
    while (secured && peer.isOpen()) {
        const std::string request = peer.readRequest();
        if (request.empty())
            break;
        {
            const std::lock_guard lock(guard);
            received.push_back(request);
        }
        script(peer, request);
    }
    peer.close();
    const std::lock_guard lock(guard);
    arrived += peer.everything();
    ++closed;
    changed.notify_all();
}
