#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/limits.h"
#include "emulator/http/tlsfiles.h"
#include "emulator/service/serviceoptions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace emulator {

/// Everything the emulator can be told at start.
struct Options
{
    /// TCP port on 127.0.0.1; 0 takes a free one.
    std::uint16_t port = 0;
    ServiceOptions service{};
    /// SQLite file that keeps the state; `:memory:` keeps it until the end.
    std::string database = ":memory:";
    /// Newest documents that are kept; four times as many exchanges.
    std::int64_t keep = 10'000;
    Limits limits{};
    TlsFiles tls{};
    /// Names beside those of this machine that a Host header may hold.
    std::vector<std::string> allowedHosts{};
    /// Faults in force from the start.
    std::vector<Fault> faults{};
};

} // namespace emulator
