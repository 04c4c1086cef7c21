#pragma once

#include "emulator/callbacks/callbacklimits.h"
#include "emulator/faults/fault.h"
#include "emulator/server/limits.h"
#include "emulator/server/tlsfiles.h"
#include "emulator/service/serviceoptions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

struct Options
{
    /// TCP port on 127.0.0.1; 0 means any free one.
    std::uint16_t port = 0;
    ServiceOptions service{};
    /// SQLite file with the state; `:memory:` keeps it until the emulator exits.
    std::string database = ":memory:";
    /// How many of the newest documents to keep, and four times as many exchanges.
    std::int64_t keep = 10'000;
    Limits limits{};
    TlsFiles tls{};
    /// Names permitted in a Host header in addition to those of this machine.
    std::vector<std::string> allowedHosts{};
    /// Whether and how far programs on this machine may be called; they are not by default.
    std::optional<CallbackLimits> callbacks{};
    /// File with recorded answers to give instead of the service's; empty for none.
    std::string replay{};
    /// Faults active from the start.
    std::vector<Fault> faults{};
};

} // namespace emulator
