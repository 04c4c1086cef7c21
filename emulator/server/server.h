#pragma once

#include "emulator/http/answer.h"
#include "emulator/server/limits.h"
#include "emulator/server/tlsfiles.h"

#include <cstdint>
#include <memory>
#include <string>

namespace boost::asio {
class io_context;
} // namespace boost::asio

namespace emulator {

/// An HTTP server on 127.0.0.1 that gets its answers from a handler. It works in the thread that calls `run`.
class Server
{
public:
    /// Binds the port at once; 0 means any free one. Throws std::runtime_error if the port is taken or a TLS
    /// file cannot be used.
    Server(std::uint16_t port, Handler handler, const Limits& limits = {}, const TlsFiles& tls = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] std::uint16_t port() const;

    /// Serves until `stop`, or until SIGINT or SIGTERM if `stopOnSignals` was called.
    void run();
    /// May be called from any thread.
    void stop();
    void stopOnSignals();

    /// Runs everything; for others that work in the same thread and end before the server does.
    [[nodiscard]] boost::asio::io_context& context();

    /// Sends an event to every connection that follows events. May only be called from the handler.
    void publish(const std::string& event);
    /// Whether any connection follows events.
    [[nodiscard]] bool followed() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation;
};

} // namespace emulator
