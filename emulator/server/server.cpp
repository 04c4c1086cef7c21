#include "emulator/server/server.h"

#include "emulator/server/session.h"

#include <boost/asio.hpp>
#include <boost/beast/ssl.hpp>

#include <csignal>
#include <optional>
#include <stdexcept>

namespace emulator {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
using tcp = asio::ip::tcp;
using boost::system::error_code;

constexpr auto tuple = asio::as_tuple(asio::use_awaitable);

// Connections on loopback have IPv4 addresses.
Budget::Peer peerOf(const tcp::socket& socket)
{
    error_code error;
    const auto end = socket.remote_endpoint(error);
    return error || !end.address().is_v4() ? 0 : end.address().to_v4().to_uint();
}

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

    asio::io_context& context() { return io; }

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
                // Most likely out of descriptors.
                shared.budget.closeStalest();
                asio::steady_timer pause(io, std::chrono::milliseconds(50));
                co_await pause.async_wait(tuple);
                continue;
            }
            socket.set_option(tcp::no_delay(true), error);
            asio::co_spawn(io, attend(std::move(socket)), asio::detached);
        }
    }

    asio::awaitable<void> attend(tcp::socket socket)
    {
        Budget::Account account(shared.budget, peerOf(socket));
        if (!account.isOpen())
            co_return;
        if (tlsContext) {
            TlsStream stream(std::move(socket), *tlsContext);
            account.setCloser([&stream] { beast::get_lowest_layer(stream).close(); });
            beast::get_lowest_layer(stream).expires_after(shared.limits.idle);
            const auto [failure] = co_await stream.async_handshake(asio::ssl::stream_base::server, tuple);
            if (failure)
                co_return;
            co_await serve(stream, shared, account);
            if (beast::get_lowest_layer(stream).socket().is_open())
                co_await stream.async_shutdown(tuple);
        } else {
            TcpStream stream(std::move(socket));
            account.setCloser([&stream] { stream.close(); });
            co_await serve(stream, shared, account);
            error_code ignored;
            stream.socket().shutdown(tcp::socket::shutdown_send, ignored);
        }
    }

    // The connections are destroyed with io and use the members declared before it.
    SharedState shared;
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

boost::asio::io_context& Server::context()
{
    return implementation->context();
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
