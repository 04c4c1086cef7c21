#include "emulator/server.h"

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <csignal>
#include <stdexcept>

namespace emulator {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;
using Parser = http::request_parser<http::string_body>;
using boost::system::error_code;

// GCC 12 destroys a temporary in an awaited call twice, so whatever is written has a name.
const std::string goOn = "HTTP/1.1 100 Continue\r\n\r\n";

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
    return request;
}

int statusOf(const error_code& error)
{
    if (error == http::error::body_limit)
        return 413;
    return error == http::error::header_limit ? 431 : 400;
}

/// One connection with its requests, one after the other.
class Session
{
public:
    Session(beast::tcp_stream stream, const Server::Handler& handler, const Limits& limits)
        : stream_(std::move(stream))
        , handler_(handler)
        , limits_(limits)
    {
    }

    asio::awaitable<void> serve()
    {
        for (bool keep = true; keep;) {
            Parser parser;
            parser.eager(true);
            parser.header_limit(static_cast<std::uint32_t>(limits_.headerBytes));
            parser.body_limit(limits_.bodyBytes);
            std::string raw;
            if (const error_code error = co_await read(parser, raw)) {
                if (error != http::error::end_of_stream && error != beast::error::timeout) {
                    const Reply refusal{.status = statusOf(error),
                        .contentType = "text/plain",
                        .body = error.message() + "\n"};
                    const std::string bytes = serialise(refusal, false);
                    co_await write(bytes);
                }
                break;
            }
            keep = parser.get().keep_alive();
            const Request request = toRequest(parser, std::move(raw));
            const std::string bytes = serialise(handler_(request), keep);
            const bool written = co_await write(bytes);
            keep = keep && written;
        }
        error_code ignored;
        stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
    }

private:
    /// Feeds the parser by hand, so that `raw` holds every byte of the request and none of the next one.
    asio::awaitable<error_code> read(Parser& parser, std::string& raw)
    {
        bool continueAsked = false;
        stream_.expires_after(limits_.idle);
        while (!parser.is_done()) {
            error_code error;
            const std::size_t used = buffer_.size() > 0 ? parser.put(buffer_.data(), error) : 0;
            raw.append(static_cast<const char*>(buffer_.data().data()), used);
            buffer_.consume(used);
            if (error && error != http::error::need_more)
                co_return error;
            if (used > 0 && (!error || parser.is_done()))
                continue;
            if (parser.is_header_done() && !continueAsked &&
                parser.get()[http::field::expect] == "100-continue") {
                continueAsked = true;
                co_await write(goOn);
            }
            const auto [failure, bytes] = co_await stream_.async_read_some(buffer_.prepare(8192), tuple);
            if (failure)
                co_return raw.empty() ? error_code(http::error::end_of_stream) : failure;
            buffer_.commit(bytes);
        }
        co_return error_code();
    }

    asio::awaitable<bool> write(const std::string& bytes)
    {
        stream_.expires_after(limits_.idle);
        const auto [failure, count] = co_await asio::async_write(stream_, asio::buffer(bytes), tuple);
        co_return !failure;
    }

    beast::tcp_stream stream_;
    beast::flat_buffer buffer_;
    const Server::Handler& handler_;
    const Limits& limits_;
};

/// Adds one to a number for as long as it lives.
class Counted
{
public:
    explicit Counted(std::size_t& number)
        : number_(number)
    {
        ++number_;
    }
    ~Counted() { --number_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    std::size_t& number_;
};

} // namespace

class Server::Implementation
{
public:
    Implementation(const std::uint16_t port, Handler handler, const Limits& limits)
        : handler_(std::move(handler))
        , limits_(limits)
        , acceptor_(io_, tcp::v4())
        , signals_(io_)
    {
        listen(port);
        asio::co_spawn(io_, accept(), asio::detached);
    }

    [[nodiscard]] std::uint16_t port() const { return acceptor_.local_endpoint().port(); }

    void run() { io_.run(); }

    void stop() { io_.stop(); }

    void stopOnSignals()
    {
        signals_.add(SIGINT);
        signals_.add(SIGTERM);
        signals_.async_wait([this](const error_code& error, int) {
            if (!error)
                stop();
        });
    }

private:
    void listen(const std::uint16_t port)
    {
        error_code error;
        acceptor_.set_option(tcp::acceptor::reuse_address(true));
        if (!acceptor_.bind(tcp::endpoint(asio::ip::address_v4::loopback(), port), error))
            acceptor_.listen(asio::socket_base::max_listen_connections, error);
        if (error)
            throw std::runtime_error(
                "cannot listen on port " + std::to_string(port) + ": " + error.message());
    }

    asio::awaitable<void> accept()
    {
        for (;;) {
            auto [error, socket] = co_await acceptor_.async_accept(tuple);
            if (error) {
                // Out of descriptors, most likely: give connections time to end instead of spinning.
                asio::steady_timer pause(io_, std::chrono::milliseconds(50));
                co_await pause.async_wait(tuple);
                continue;
            }
            if (connections_ >= limits_.connections)
                continue;
            socket.set_option(tcp::no_delay(true), error);
            asio::co_spawn(io_, attend(std::move(socket)), asio::detached);
        }
    }

    asio::awaitable<void> attend(tcp::socket socket)
    {
        const Counted counted(connections_);
        Session session(beast::tcp_stream(std::move(socket)), handler_, limits_);
        co_await session.serve();
    }

    Handler handler_;
    Limits limits_;
    std::size_t connections_ = 0;
    asio::io_context io_{1};
    tcp::acceptor acceptor_;
    asio::signal_set signals_;
};

Server::Server(const std::uint16_t port, Handler handler, const Limits& limits)
    : implementation_(std::make_unique<Implementation>(port, std::move(handler), limits))
{
}

Server::~Server() = default;

std::uint16_t Server::port() const
{
    return implementation_->port();
}

void Server::run()
{
    implementation_->run();
}

void Server::stop()
{
    implementation_->stop();
}

void Server::stopOnSignals()
{
    implementation_->stopOnSignals();
}

} // namespace emulator
