#pragma once

#include "emulator/options.h"
#include "emulator/server.h"
#include "emulator/service.h"
#include "emulator/store.h"

#include <string>

namespace emulator {

/// The whole product: store, service and server put together.
class Emulator
{
public:
    /// Opens the state and binds the port. Throws sqlite::Error or std::runtime_error.
    explicit Emulator(const Options& options, Clock clock = systemTime);

    /// Address that a client is configured with, `http://127.0.0.1:PORT/possystem/v4/`.
    [[nodiscard]] std::string url() const;
    [[nodiscard]] Server& server() { return server_; }

private:
    Store store_;
    Service service_;
    Server server_;
};

} // namespace emulator
