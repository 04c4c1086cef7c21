#pragma once

#include "emulator/server/limits.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <map>

namespace emulator {

/// Connections and memory that all clients share, and those of one address. Whoever needs more than is left
/// is served at the cost of the connection that has made no progress for the longest time. Only for the
/// server's thread.
class Budget
{
public:
    /// The address of a client.
    using Peer = std::uint32_t;

    /// The share of one connection, for as long as it exists.
    class Account
    {
    public:
        /// Closes another connection if there are too many; see `isOpen`. The budget is borrowed.
        Account(Budget& usedBudget, Peer address);
        ~Account();
        Account(const Account&) = delete;
        Account& operator=(const Account&) = delete;

        /// False if there was no room for the connection, or if it has been closed to make room.
        [[nodiscard]] bool isOpen() const { return open; }

        /// What closes the connection.
        void setCloser(std::function<void()> newCloser) { closer = std::move(newCloser); }
        /// Closes the connection and returns its share.
        void close();

        /// Bytes have arrived or left.
        void progress();
        /// The connection now takes this many bytes. Closes others if that is too much.
        void hold(std::size_t bytes);
        /// Whether the connection is busy with something that takes its time, so it must not be closed.
        void setBusy(bool isBusy) { busy = isBusy; }

    private:
        friend class Budget;

        Budget& budget;
        Peer peer;
        std::function<void()> closer;
        std::list<Account*>::iterator place;
        std::size_t held = 0;
        bool open = false;
        bool busy = false;
    };

    explicit Budget(const Limits& usedLimits)
        : limits(usedLimits)
    {
    }
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;

    /// Closes the connection without progress for the longest time, if there is one that may be closed.
    bool closeStalest();

private:
    struct Usage
    {
        std::size_t connections = 0;
        std::size_t memory = 0;
    };

    /// Makes room for one more connection of `peer`.
    [[nodiscard]] bool admit(Peer peer);
    void makeRoomInMemory(const Account& forWhom);
    bool closeFirst(const std::function<bool(const Account&)>& agrees);

    const Limits limits;
    /// Least recent progress first.
    std::list<Account*> accounts;
    Usage all;
    std::map<Peer, Usage> peers;
};

} // namespace emulator
