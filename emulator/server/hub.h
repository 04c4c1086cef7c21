#pragma once

#include "emulator/server/budget.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace emulator {

/// The connections that receive events, each with its unsent events. Only for the server's thread.
class Hub
{
public:
    /// `most` connections at once receive events; the oldest one is closed for another.
    explicit Hub(std::size_t most)
        : mostFollowers(most)
    {
    }

    /// Receives events for as long as it exists and its connection is open.
    class Follower
    {
    public:
        /// Hub and account are borrowed.
        Follower(Hub& usedHub, Budget::Account& usedAccount, const boost::asio::any_io_executor& executor)
            : wake(executor)
            , account(usedAccount)
            , hub(usedHub)
        {
            while (hub.followers.size() >= hub.mostFollowers)
                hub.followers.front()->dismiss();
            hub.followers.push_back(this);
        }
        ~Follower() { std::erase(hub.followers, this); }
        Follower(const Follower&) = delete;
        Follower& operator=(const Follower&) = delete;

        [[nodiscard]] bool hasEvent() const { return !pending.empty(); }

        [[nodiscard]] std::string takeEvent()
        {
            std::string event = std::move(pending.front());
            pending.pop_front();
            pendingBytes -= event.size();
            return event;
        }

        boost::asio::steady_timer wake;

    private:
        friend class Hub;

        // One that does not keep up loses its unsent events and gets a `lost` event instead.
        void add(const std::string& event)
        {
            constexpr std::size_t mostPending = 256 * 1024;
            if (pendingBytes + event.size() > mostPending) {
                pending.assign(1, R"({"kind":"lost"})");
                pendingBytes = pending.front().size();
            }
            pending.push_back(event);
            pendingBytes += event.size();
            wake.cancel();
        }

        void dismiss()
        {
            account.close();
            wake.cancel();
            std::erase(hub.followers, this);
        }

        Budget::Account& account;
        Hub& hub;
        std::deque<std::string> pending;
        std::size_t pendingBytes = 0;
    };

    void publish(const std::string& event)
    {
        for (Follower* follower : followers)
            follower->add(event);
    }

    [[nodiscard]] bool followed() const { return !followers.empty(); }

private:
    std::size_t mostFollowers;
    std::vector<Follower*> followers;
};

} // namespace emulator
