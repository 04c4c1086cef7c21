#pragma once

#include "emulator/lists.h"

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
    std::chrono::seconds tokenLife = std::chrono::hours(24);
    /// Receipts after which a register closes its shift and opens the next; 0 leaves it to the 24 hours.
    int receiptsPerShift = 0;
    /// SQLite file that keeps the state; `:memory:` keeps it until the end.
    std::string database = ":memory:";
    Lists lists{};
};

} // namespace emulator
