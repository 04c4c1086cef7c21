#include "emulator/http/server.h"

#include "emulator/http/hub.h"

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>

#include <csignal>
#include <optional>
#include <stdexcept>

namespace emulator {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;
using Parser = http::request_parser<http::string_body>;
using TcpStream = beast::tcp_stream;
using TlsStream = beast::ssl_stream<beast::tcp_stream>;
using boost::system::error_code;

// GCC 12 destroys a temporary in an awaited call twice, so whatever is written has a name.
const std::string goOn = "HTTP/1.1 100 Continue\r\n\r\n";
const std::string eventsHead = "HTTP/1.1 200 OK\r\nServer: fremulator\r\nContent-Type: text/event-stream\r\n"
                               "Cache-Control: no-store\r\nConnection: close\r\n\r\n: hello\n\n";
const std::string stillHere = ": still here\n\n";

constexpr auto tuple = asio::as_tuple(asio::use_awaitable);

Request toRequest(Parser& parser, std::string raw)
{
    auto& message = parser.get();
    Request request;
    request.method = message.method_string();
    setTarget(request, message.target());
    for (const auto& field : message)
        request.headers.emplace_back(field.name_string(), field.value());
    request.body = std::move(message.body());
    request.raw = std::move(raw);
    request.keepAlive = message.keep_alive();
    return request;
}

int statusOf(const error_code& error)
{
    if (error == http::error::body_limit)
        return 413;
    return error == http::error::header_limit ? 431 : 400;
}

/// What all connections share.
struct Shared
{
    Server::Handler handler;
    Limits limits;
    Hub hub{};
    std::size_t connections = 0;
};

/// One connection with its requests, one after the other.
template <class Stream>
class Session
{
public:
    Session(Stream& usedStream, asio::io_context& usedIo, Shared& usedShared)
        : stream(usedStream)
        , io(usedIo)
        , shared(usedShared)
    {
    }

    asio::awaitable<void> serve()
    {
        for (bool keep = true; keep;) {
            Parser parser;
            parser.eager(true);
            parser.header_limit(static_cast<std::uint32_t>(shared.limits.headerBytes));
            parser.body_limit(shared.limits.bodyBytes);
            std::string raw;
            if (const error_code error = co_await read(parser, raw)) {
                if (error != http::error::end_of_stream && error != beast::error::timeout)
                    co_await refuse(error);
                co_return;
            }
            const Request request = toRequest(parser, std::move(raw));
            const Answer answer = shared.handler(request);
            if (answer.follow)
                keep = co_await sendEvents();
            else
                keep = co_await send(answer, request.keepAlive);
        }
    }

private:
    /// Feeds the parser by hand, so that `raw` holds every byte of the request and none of the next one.
    asio::awaitable<error_code> read(Parser& parser, std::string& raw)
    {
        bool continueAsked = false;
        lowest().expires_after(shared.limits.idle);
        while (!parser.is_done()) {
            error_code error;
            const std::size_t used = buffer.size() > 0 ? parser.put(buffer.data(), error) : 0;
            raw.append(static_cast<const char*>(buffer.data().data()), used);
            buffer.consume(used);
            if (error && error != http::error::need_more)
                co_return error;
            if (used > 0 && (!error || parser.is_done()))
                continue;
            if (parser.is_header_done() && !continueAsked &&
                parser.get()[http::field::expect] == "100-continue") {
                continueAsked = true;
                co_await write(goOn);
            }
            const auto [failure, bytes] = co_await stream.async_read_some(buffer.prepare(8192), tuple);
            if (failure)
                co_return raw.empty() ? error_code(http::error::end_of_stream) : failure;
            buffer.commit(bytes);
        }
        co_return error_code();
    }

    asio::awaitable<void> refuse(error_code error)
    {
        const Answer answer{
            .reply = {
                .status = statusOf(error), .contentType = "text/plain", .body = error.message() + "\n"}};
        const std::string bytes = answer.bytes(false);
        co_await write(bytes);
    }

    /// Whether the connection can bring another request.
    asio::awaitable<bool> send(const Answer& answer, bool keepAlive)
    {
        const Wire& wire = answer.wire;
        if (wire.delay.count() > 0)
            co_await wait(wire.delay);
        const std::string bytes = answer.bytes(keepAlive);
        const std::size_t piece = wire.piece > 0 ? wire.piece : std::max<std::size_t>(1, bytes.size());
        for (std::size_t from = 0; from < bytes.size(); from += piece) {
            if (from > 0)
                co_await wait(wire.pause);
            const bool written = co_await write(std::string_view(bytes).substr(from, piece));
            if (!written)
                co_return false;
        }
        if (wire.end == Wire::End::Reset)
            reset();
        if (wire.end == Wire::End::Hold)
            co_await holdUntilPeerLeaves();
        co_return answer.keeps(keepAlive);
    }

    void reset()
    {
        error_code ignored;
        lowest().socket().set_option(asio::socket_base::linger(true, 0), ignored);
        lowest().socket().close(ignored);
    }

    asio::awaitable<void> holdUntilPeerLeaves()
    {
        lowest().expires_never();
        for (error_code failure; !failure;) {
            buffer.clear();
            std::tie(failure, std::ignore) = co_await stream.async_read_some(buffer.prepare(8192), tuple);
        }
    }

    asio::awaitable<bool> sendEvents()
    {
        Hub::Follower follower(shared.hub, io);
        bool written = co_await write(eventsHead);
        while (written) {
            if (follower.pending.empty()) {
                follower.wake.expires_after(std::chrono::seconds(15));
                co_await follower.wake.async_wait(tuple);
            }
            if (follower.pending.empty()) {
                written = co_await write(stillHere);
                continue;
            }
            const std::string event = "data: " + follower.pending.front() + "\n\n";
            follower.pending.pop_front();
            written = co_await write(event);
        }
        co_return false;
    }

    asio::awaitable<void> wait(std::chrono::milliseconds time)
    {
        asio::steady_timer timer(io, time);
        co_await timer.async_wait(tuple);
    }

    asio::awaitable<bool> write(std::string_view bytes)
    {
        lowest().expires_after(shared.limits.idle);
        const auto [failure, count] =
            co_await asio::async_write(stream, asio::buffer(bytes.data(), bytes.size()), tuple);
        co_return !failure;
    }

    beast::tcp_stream& lowest() { return beast::get_lowest_layer(stream); }

    Stream& stream;
    asio::io_context& io;
    Shared& shared;
    beast::flat_buffer buffer;
};

/// Adds one to a number for as long as it lives.
class Counted
{
public:
    explicit Counted(std::size_t& counter)
        : counted(counter)
    {
        ++counted;
    }
    ~Counted() { --counted; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    std::size_t& counted;
};

} // namespace

class Server::Implementation
{
public:
    Implementation(std::uint16_t port, Handler handler, const Limits& limits, const TlsFiles& tls)
        : shared{.handler = std::move(handler), .limits = limits}
        , acceptor(io, tcp::v4())
        , signals(io)
    {
        if (!tls.certificateChain.empty())
            readTlsFiles(tls);
        listen(port);
        asio::co_spawn(io, accept(), asio::detached);
    }

    [[nodiscard]] std::uint16_t port() const { return acceptor.local_endpoint().port(); }

    void run() { io.run(); }

    void stop() { io.stop(); }

    void stopOnSignals()
    {
        signals.add(SIGINT);
        signals.add(SIGTERM);
        signals.async_wait([this](const error_code& error, int) {
            if (!error)
                stop();
        });
    }

    void publish(const std::string& event) { shared.hub.publish(event); }

    [[nodiscard]] bool followed() const { return shared.hub.followed(); }

private:
    void readTlsFiles(const TlsFiles& files)
    {
        tlsContext.emplace(asio::ssl::context::tls_server);
        error_code error;
        tlsContext->use_certificate_chain_file(files.certificateChain, error);
        if (error)
            throw std::runtime_error(
                "cannot use certificate " + files.certificateChain + ": " + error.message());
        tlsContext->use_private_key_file(files.privateKey, asio::ssl::context::pem, error);
        if (error)
            throw std::runtime_error("cannot use private key " + files.privateKey + ": " + error.message());
    }

    void listen(std::uint16_t port)
    {
        error_code error;
        acceptor.set_option(tcp::acceptor::reuse_address(true));
        acceptor.bind(tcp::endpoint(asio::ip::address_v4::loopback(), port), error);
        if (!error)
            acceptor.listen(asio::socket_base::max_listen_connections, error);
        if (error)
            throw std::runtime_error(
                "cannot listen on port " + std::to_string(port) + ": " + error.message());
    }

    asio::awaitable<void> accept()
    {
        for (;;) {
            auto [error, socket] = co_await acceptor.async_accept(tuple);
            if (error) {
                // Out of descriptors, most likely: give connections time to end instead of spinning.
                asio::steady_timer pause(io, std::chrono::milliseconds(50));
                co_await pause.async_wait(tuple);
                continue;
            }
            if (shared.connections >= shared.limits.connections)
                continue;
            socket.set_option(tcp::no_delay(true), error);
            asio::co_spawn(io, attend(std::move(socket)), asio::detached);
        }
    }

    asio::awaitable<void> attend(tcp::socket socket)
    {
        const Counted counted(shared.connections);
        if (tlsContext) {
            TlsStream stream(std::move(socket), *tlsContext);
            beast::get_lowest_layer(stream).expires_after(shared.limits.idle);
            const auto [failure] = co_await stream.async_handshake(asio::ssl::stream_base::server, tuple);
            if (failure)
                co_return;
            co_await Session<TlsStream>(stream, io, shared).serve();
            if (beast::get_lowest_layer(stream).socket().is_open())
                co_await stream.async_shutdown(tuple);
        } else {
            TcpStream stream(std::move(socket));
            co_await Session<TcpStream>(stream, io, shared).serve();
            error_code ignored;
            stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
        }
    }

    // The connections live in io and use what stands before it.
    Shared shared;
    std::optional<asio::ssl::context> tlsContext;
    asio::io_context io{1};
    tcp::acceptor acceptor;
    asio::signal_set signals;
};

Server::Server(std::uint16_t port, Handler handler, const Limits& limits, const TlsFiles& tls)
    : implementation(std::make_unique<Implementation>(port, std::move(handler), limits, tls))
{
}

Server::~Server() = default;

std::uint16_t Server::port() const
{
    return implementation->port();
}

void Server::run()
{
    implementation->run();
}

void Server::stop()
{
    implementation->stop();
}

void Server::stopOnSignals()
{
    implementation->stopOnSignals();
}

void Server::publish(const std::string& event)
{
    implementation->publish(event);
}

bool Server::followed() const
{
    return implementation->followed();
}

} // namespace emulator
