#pragma once

#include "emulator/http.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace emulator {

/// What a server allows a peer.
struct Limits
{
    std::size_t headerBytes = 16 * 1024;
    std::size_t bodyBytes = 1024 * 1024;
    std::size_t connections = 4096;
    /// For a request to arrive whole, and for a kept connection to bring its next one.
    std::chrono::seconds idle{120};
};

/// An HTTP server on 127.0.0.1 that asks a handler for every answer. It works in the thread that calls `run`.
class Server
{
public:
    using Handler = std::function<Reply(const Request&)>;

    /// Binds at once; port 0 takes a free one. Throws std::runtime_error when the port is taken.
    Server(std::uint16_t port, Handler handler, const Limits& limits = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] std::uint16_t port() const;

    /// Serves until `stop`, or until SIGINT or SIGTERM when `stopOnSignals` was called.
    void run();
    /// From any thread.
    void stop();
    void stopOnSignals();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace emulator
