#pragma once

#include "emulator/api/api.h"
#include "emulator/callbacks/callbacks.h"
#include "emulator/options.h"
#include "emulator/replay/replay.h"
#include "emulator/server/server.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

/// The emulator: store, service or recording, API and HTTP server.
class Emulator
{
public:
    /// Reads the recording, if any, opens the database and binds the port. Throws sqlite::Error or
    /// std::runtime_error.
    explicit Emulator(const Options& options, Clock usedClock = systemTime);

    /// The address to configure clients with, `http://127.0.0.1:PORT/possystem/v4/`.
    [[nodiscard]] std::string url() const;
    /// The address of the page.
    [[nodiscard]] const std::string& pageUrl() const { return root; }
    [[nodiscard]] Server& server() { return httpServer; }

private:
    Emulator(const Options& options, const std::optional<Recording>& recording, Clock usedClock);

    Answer answer(const Request& request);
    void noticeExchange(const Exchange& exchange);
    void publishExchange(const Exchange& exchange);

    std::vector<std::string> allowedHosts;
    Clock clock;
    Store store;
    FaultBox faults;
    Service service;
    std::optional<Replay> replay;
    Api api;
    Server httpServer;
    std::string root;
    std::unique_ptr<Callbacks> callbacks;
};

} // namespace emulator
