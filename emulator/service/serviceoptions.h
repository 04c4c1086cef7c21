#pragma once

#include "emulator/rules/lists.h"
#include "emulator/rules/revision.h"

#include <chrono>
#include <string>
#include <vector>

namespace emulator {

/// A group of registers (a shop). Clients name it in the path of a call.
struct Group
{
    std::string code{};
    /// Taxpayer number required in the group's receipts; if empty, any valid one is accepted.
    std::string inn{};
    /// How many registers share the group's receipts, 1 to 99.
    int registers = 1;
    /// Whether status answers contain a link to the receipt.
    bool receiptUrl = true;
    /// Whether calls are refused with code 21, as for a group with another protocol version.
    bool protocolRefused = false;
};

struct User
{
    std::string login{};
    std::string password{};
    /// Codes of the groups that the user may use.
    std::vector<std::string> groups{};
    /// Calls of a blocked user are refused with code 14.
    bool blocked = false;
    /// Whether token calls are refused with code 21, as for an account with another protocol version.
    bool protocolRefused = false;
};

struct ServiceOptions
{
    std::vector<Group> groups{{.code = "test"}};
    std::vector<User> users{{.login = "test", .password = "test", .groups = {"test"}}};
    /// How many "not processed yet" status answers precede the result of every document.
    int waits = 0;
    std::chrono::milliseconds tokenLife = std::chrono::hours(24);
    /// A register processes receipts one at a time, each for a random time between these.
    std::chrono::milliseconds latencyLow{0};
    std::chrono::milliseconds latencyHigh{0};
    /// A document that would wait longer for a register fails with code 1 and type `timeout`.
    std::chrono::milliseconds queueTimeout = std::chrono::seconds(300);
    /// Whether a group's status calls are refused beyond one per second and register.
    bool pace = false;
    /// Receipts after which a register starts a new shift; 0 means that it only does so after 24 hours.
    int receiptsPerShift = 0;
    /// Site of the tax authority, which registers print on receipts.
    std::string fnsSite = "www.nalog.gov.ru";
    /// The names that are accepted; those of the edition's revision, unless they are configured.
    Lists lists = listsOf(newestRevision);
    Edition edition{};
};

} // namespace emulator
