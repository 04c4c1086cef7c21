#pragma once

#include "emulator/service/lists.h"

#include <chrono>
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

/// Everything the service can be told at start.
struct ServiceOptions
{
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
    Lists lists{};
};

} // namespace emulator
