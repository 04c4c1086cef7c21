#pragma once

#include "emulator/http/answer.h"
#include "emulator/http/limits.h"
#include "emulator/http/tlsfiles.h"

#include <cstdint>
#include <memory>
#include <string>

namespace emulator {

/// An HTTP server on 127.0.0.1 that asks a handler for every answer. It works in the thread that calls `run`.
class Server
{
public:
    /// Binds at once; port 0 takes a free one. Throws std::runtime_error when the port is taken or a TLS file
    /// cannot be used.
    Server(std::uint16_t port, Handler handler, const Limits& limits = {}, const TlsFiles& tls = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] std::uint16_t port() const;

    /// Serves until `stop`, or until SIGINT or SIGTERM when `stopOnSignals` was called.
    void run();
    /// From any thread.
    void stop();
    void stopOnSignals();

    /// Sends an event to every connection that follows. Only from the handler.
    void publish(const std::string& event);
    /// Whether any connection does.
    [[nodiscard]] bool followed() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation;
};

} // namespace emulator
