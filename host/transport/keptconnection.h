#pragma once

#include "host/export.h"

#include <chrono>

namespace hostruntime {

/// Decides whether a POST may use the connection that the previous exchange has left open.
///
/// A server may close a connection at any moment, even while a request is on its way, and then nobody knows
/// whether the request was read. The connection is therefore used again only if it has been idle for less
/// than any common idle limit, if a check shows that the server has not closed it, and if this server has
/// never been seen to close a connection right after an answer without announcing it. Until a server has kept
/// a connection a few times, the check waits for a moment, because the end of a connection arrives shortly
/// after the answer.
class HOST_EXPORT KeptConnection
{
public:
    /// The longest idle time; servers close idle connections after 5 to 75 seconds.
    static constexpr std::chrono::seconds longestIdle{4};

    /// How one exchange has used the connection.
    struct Use
    {
        /// The socket that it has left open; -1 for none.
        int socket;
        /// Whether it took place on the connection of the exchange before it.
        bool reused;
        /// Whether the whole answer has arrived.
        bool answered;
    };

    /// To be called at the end of each exchange.
    void noteUse(const Use& use);
    /// Whether a POST may use the connection. Blocks for up to 20 milliseconds until the server has kept a
    /// connection three times.
    [[nodiscard]] bool mayCarryPost();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool isFresh() const;
    [[nodiscard]] bool isClosedWithin(std::chrono::milliseconds wait) const;

    int openSocket = -1;
    Clock::time_point lastUse;
    int timesKept = 0;
    bool closesAtOnce = false;
};

} // namespace hostruntime
