#pragma once

#include "host/transport/httpmessage.h"
#include "host/transport/transportoptions.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

namespace hostruntime {

/// The course of one exchange: what has been sent and received, and which limit runs out next.
class HttpTransfer
{
public:
    static constexpr std::chrono::milliseconds longest = std::chrono::hours(1);

    struct Limit
    {
        /// Not above zero when the limit has run out.
        std::chrono::milliseconds left;
        /// What to say of that; empty until then.
        QString expiry;
    };

    /// All are borrowed. `beforeSending` is called each time the request is about to be put on the wire; it
    /// must not throw.
    HttpTransfer(const HttpRequest& request, const TransportOptions& options,
        const std::function<void()>& beforeSending);

    /// A request is about to be put on the wire; returns whether it may be.
    bool begin();
    /// Copies the next part of the request's body; returns its size, 0 at the end.
    std::size_t takeBody(char* to, std::size_t room);
    /// Adds one line of headers; false when there are too many of them.
    bool addHeader(std::string_view line);
    /// Adds a part of the reply's body, uncompressed; false when it grows too large.
    bool addBody(std::string_view part);

    [[nodiscard]] Limit nextLimit() const;
    /// Why this object has ended the exchange; empty when it has not.
    [[nodiscard]] QString refusal() const { return cause; }
    [[nodiscard]] bool wasSent() const { return attempts > 0; }
    /// Whether the headers of a final answer have come to their end.
    [[nodiscard]] bool hasAllHeaders() const { return headersEnded; }
    [[nodiscard]] QByteArray takeReply() { return std::move(reply); }

private:
    using Clock = std::chrono::steady_clock;

    const HttpRequest& request;
    const TransportOptions& options;
    const std::function<void()>& beforeSending;
    const Clock::time_point started = Clock::now();
    Clock::time_point progressed = started;
    int attempts = 0;
    qsizetype sent = 0;
    qsizetype headersSize = 0;
    bool informational = false;
    bool headersEnded = false;
    QByteArray reply;
    QString cause;
};

} // namespace hostruntime
