#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

namespace emulator {

/// Those who follow events, each with what it has not been sent yet. For the server's thread alone.
class Hub
{
public:
    /// One who follows, for as long as it lives.
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

    /// A follower that does not keep up loses what it has not read and is told to start anew.
    void publish(const std::string& event)
    {
        constexpr std::size_t patience = 1000;
        for (Follower* follower : followers) {
            if (follower->pending.size() >= patience)
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
