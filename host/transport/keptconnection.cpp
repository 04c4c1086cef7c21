#include "host/transport/keptconnection.h"

#include <poll.h>

namespace hostruntime {

namespace {

using namespace std::chrono_literals;

// Once a server has kept a connection this often, the check for a closed one need not wait.
constexpr int proof = 3;
constexpr auto patience = 20ms;
// A connection closed sooner than this after an answer was not idle for too long: the server closes by habit.
constexpr auto atOnce = 1s;

} // namespace

void KeptConnection::noteUse(const Use& use)
{
    // After a whole answer, a missing socket means that the server has announced the end of the connection.
    if (use.reused && (use.socket >= 0 || use.answered))
        ++timesKept;
    else if (openSocket >= 0 && isFresh())
        closesAtOnce = true;
    openSocket = use.socket;
    lastUse = Clock::now();
}

bool KeptConnection::mayCarryPost()
{
    const bool mayBeOpen = openSocket >= 0 && !closesAtOnce && Clock::now() - lastUse < longestIdle;
    if (mayBeOpen && !isClosedWithin(timesKept < proof ? patience : 0ms))
        return true;
    if (mayBeOpen && isFresh())
        closesAtOnce = true;
    openSocket = -1;
    return false;
}

bool KeptConnection::isFresh() const
{
    return Clock::now() - lastUse < atOnce;
}

// Nothing is expected between exchanges, so anything that can be read is the end of the connection or
// announces it.
bool KeptConnection::isClosedWithin(std::chrono::milliseconds wait) const
{
    pollfd connection{openSocket, POLLIN | POLLRDHUP, 0};
    return poll(&connection, 1, static_cast<int>(wait.count())) != 0;
}

} // namespace hostruntime
