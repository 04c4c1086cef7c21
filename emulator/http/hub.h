#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

namespace emulator {

/// The connections that receive events, each with its unsent events. Only for the server's thread.
class Hub
{
public:
    /// Receives events for as long as it exists.
    class Follower
    {
    public:
        Follower(Hub& usedHub, const boost::asio::any_io_executor& executor)
            : wake(executor)
            , hub(usedHub)
        {
            hub.followers.push_back(this);
        }
        ~Follower() { std::erase(hub.followers, this); }
        Follower(const Follower&) = delete;
        Follower& operator=(const Follower&) = delete;

        std::deque<std::string> pending;
        boost::asio::steady_timer wake;

    private:
        Hub& hub;
    };

    /// A follower that does not keep up loses its unsent events and gets a `lost` event instead.
    void publish(const std::string& event)
    {
        constexpr std::size_t mostPending = 1000;
        for (Follower* follower : followers) {
            if (follower->pending.size() >= mostPending)
                follower->pending.assign(1, R"({"kind":"lost"})");
            follower->pending.push_back(event);
            follower->wake.cancel();
        }
    }

    [[nodiscard]] bool followed() const { return !followers.empty(); }

private:
    std::vector<Follower*> followers;
};

} // namespace emulator
