#pragma once

#include "emulator/protocol/call.h"
#include "emulator/replay/recording.h"
#include "emulator/store/store.h"
#include "emulator/values/moscowtime.h"

#include <deque>
#include <functional>
#include <map>
#include <string>

namespace emulator {

/// Answers calls as the service did when it was recorded. For one thread.
class Replay
{
public:
    /// The store is borrowed and gets an exchange for every call.
    Replay(const Recording& recording, Store& usedStore, Clock usedClock);

    /// Called with every recorded exchange; it contains no secrets.
    void setListener(std::function<void(const Exchange&)> newListener) { listener = std::move(newListener); }

    /// The first answer to such a call that has not been given yet; an error that says so if there is none
    /// left.
    [[nodiscard]] Answer answer(const Request& request);

private:
    [[nodiscard]] Answer next(const Request& request) const;
    /// Keeps a register call that was answered with an error, or forgets it where its id now has a uuid.
    void noteRefusal(const Call& call, const Exchange& exchange, const Reply& reply);
    /// Separate, so that an answer is not lost if recording it fails.
    void useUp(const Request& request);
    [[nodiscard]] std::string exhausted(const std::string& what) const;

    std::map<std::string, std::deque<Answer>> answers;
    Store& store;
    Clock clock;
    std::function<void(const Exchange&)> listener;
};

} // namespace emulator
