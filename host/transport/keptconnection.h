#pragma once

#include "host/export.h"

#include <chrono>

namespace hostruntime {

/// Decides whether a POST may travel on the connection that the exchange before it has left open.
///
/// A server may close a connection at any moment, also while a request is on its way to it, and then nobody
/// knows whether the request was read. So the connection is used again only while it is younger than any
/// common idle limit, after a look whether the server has closed it, and not at all with a server that was
/// seen to close connections at once without saying so. Before a server has proved that it keeps them, the
/// look waits a moment: the end of a connection arrives just behind the answer that came before it.
class HOST_EXPORT KeptConnection
{
public:
    /// Servers close idle connections after 5 to 75 seconds.
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
    /// Whether a POST may use the connection. Blocks for up to 20 milliseconds while the server has not
    /// proved itself.
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
