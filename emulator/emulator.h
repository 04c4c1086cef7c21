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
    explicit Emulator(const Options& options, Clock clock = systemTime);

    /// Address that a client is configured with, `http://127.0.0.1:PORT/possystem/v4/`.
    [[nodiscard]] std::string url() const;
    /// Address of the page.
    [[nodiscard]] const std::string& pageUrl() const { return root_; }
    [[nodiscard]] Server& server() { return server_; }

private:
    Answer answer(const Request& request);
    void tellOf(const Exchange& exchange);

    std::vector<std::string> allowedHosts_;
    Clock clock_;
    Store store_;
    FaultBox faults_;
    Service service_;
    Api api_;
    Server server_;
    std::string root_;
};

} // namespace emulator
