#pragma once

#include "emulator/faults/fault.h"
#include "emulator/http/limits.h"
#include "emulator/http/tlsfiles.h"
#include "emulator/service/lists.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace emulator {

/// A group of registers (a shop), as the service's clients address it in the path of a call.
struct Group
{
    std::string code{};
    /// Taxpayer number that receipts of the group must carry; empty takes any valid one.
    std::string inn{};
    /// Registers that share the group's receipts, 1 to 99.
    int registers = 1;
    /// Whether the fiscal data operator gives links to receipts.
    bool receiptUrl = true;
    /// Whether the group is answered with code 21, as one of another protocol version is.
    bool protocolRefused = false;
};

/// Someone who may ask for a token.
struct User
{
    std::string login{};
    std::string password{};
    /// Codes of the groups that the user's tokens open.
    std::vector<std::string> groups{};
    /// A blocked user is answered with code 14.
    bool blocked = false;
};

/// Everything the emulator can be told at start.
struct Options
{
    /// TCP port on 127.0.0.1; 0 takes a free one.
    std::uint16_t port = 0;
    std::vector<Group> groups{{.code = "test"}};
    std::vector<User> users{{.login = "test", .password = "test", .groups = {"test"}}};
    /// Status answers "not processed yet" that every document gets before its result.
    int waits = 0;
    std::chrono::milliseconds tokenLife = std::chrono::hours(24);
    /// A register takes a random time between these for each receipt, one after the other.
    std::chrono::milliseconds latencyLow{0};
    std::chrono::milliseconds latencyHigh{0};
    /// A document that would wait longer than this for a register fails with code 1, type `timeout`.
    std::chrono::milliseconds queueTimeout = std::chrono::seconds(300);
    /// Whether a group that asks for status more than once a second for each register is told off.
    bool pace = false;
    /// Receipts after which a register closes its shift and opens the next; 0 leaves it to the 24 hours.
    int receiptsPerShift = 0;
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
    Lists lists{};
};

} // namespace emulator
