#pragma once

#include "emulator/http/http.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace emulator {

/// What happens to an answer on its way out. The default is the honest way.
struct Wire
{
    enum class Send
    {
        Everything,
        HeadAndHalfTheBody,
        Nothing
    };
    /// What the connection comes to afterwards: kept as HTTP has it, closed, reset, or held open in silence
    /// until the peer leaves.
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
    /// When above zero the answer goes out in pieces of so many bytes, with `pause` between them.
    std::size_t piece = 0;
    std::chrono::milliseconds pause{0};
};

/// A reply and its way out.
struct Answer
{
    Reply reply{};
    Wire wire{};
    /// Instead of the reply, the connection brings server-sent events from now on.
    bool follow = false;

    /// Whether the connection stays afterwards when the client lets it.
    [[nodiscard]] bool keeps(bool keepAlive) const { return keepAlive && wire.end == Wire::End::Keep; }

    /// The bytes that go out, to a client that lets the connection stay or does not.
    [[nodiscard]] std::string bytes(bool keepAlive) const;
};

/// Answers a request.
using Handler = std::function<Answer(const Request&)>;

} // namespace emulator
