#pragma once

#include "emulator/api/api.h"
#include "emulator/http/server.h"
#include "emulator/options.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

#include <string>
#include <vector>

namespace emulator {

/// The whole product: store, service and server put together.
class Emulator
{
public:
    /// Opens the state and binds the port. Throws sqlite::Error or std::runtime_error.
    explicit Emulator(const Options& options, Clock usedClock = systemTime);

    /// Address that a client is configured with, `http://127.0.0.1:PORT/possystem/v4/`.
    [[nodiscard]] std::string url() const;
    /// Address of the page.
    [[nodiscard]] const std::string& pageUrl() const { return root; }
    [[nodiscard]] Server& server() { return httpServer; }

private:
    Answer answer(const Request& request);
    void tellOf(const Exchange& exchange);

    std::vector<std::string> allowedHosts;
    Clock clock;
    Store store;
    FaultBox faults;
    Service service;
    Api api;
    Server httpServer;
    std::string root;
};

} // namespace emulator
