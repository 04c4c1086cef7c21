#pragma once

#include "emulator/http/http.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace emulator {

/// How an answer is put on the wire. By default, the way it should be.
struct Wire
{
    enum class Send
    {
        Everything,
        HeadAndHalfTheBody,
        Nothing
    };
    /// What happens to the connection afterwards: kept or closed as HTTP says, closed, reset, or held open
    /// without another byte until the peer leaves.
    enum class End
    {
        Keep,
        Close,
        Reset,
        Hold
    };

    std::chrono::milliseconds delay{0};
    Send send = Send::Everything;
    End end = End::Keep;
    /// Added to the true Content-Length.
    int lengthError = 0;
    /// If above zero, the answer is sent in pieces of this many bytes with a `pause` between them.
    std::size_t piece = 0;
    std::chrono::milliseconds pause{0};
};

/// A reply and how it is sent.
struct Answer
{
    Reply reply{};
    Wire wire{};
    /// Returns the next piece of a body that is not in `reply`, and an empty one at its end. Called until
    /// then or until the client is gone.
    std::function<std::string()> next{};
    /// Send server-sent events from now on instead of the reply.
    bool follow = false;

    /// Whether the connection stays open afterwards, given whether the client allows it.
    [[nodiscard]] bool keeps(bool keepAlive) const { return keepAlive && wire.end == Wire::End::Keep; }

    /// The bytes to send, given whether the client allows the connection to stay open.
    [[nodiscard]] std::string bytes(bool keepAlive) const;
};

/// Returns the answer to a request.
using Handler = std::function<Answer(const Request&)>;

} // namespace emulator
