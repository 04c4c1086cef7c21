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

/// The course of one exchange: what has been sent and received, and which limit expires next.
class HttpTransfer
{
public:
    /// Every limit is cut to this.
    static constexpr std::chrono::milliseconds longest = std::chrono::hours(1);

    struct Limit
    {
        /// Zero or less when the limit has expired.
        std::chrono::milliseconds left;
        /// The Russian message about the expiry; empty before.
        QString expiry;
    };

    /// All are borrowed and must outlive the transfer. `onSending` is called each time the request is about
    /// to be put on the wire; it must not throw.
    HttpTransfer(
        const HttpRequest& outgoing, const TransportOptions& limits, const std::function<void()>& onSending);

    /// To be called when the request is about to be put on the wire; returns whether it may be.
    [[nodiscard]] bool begin();
    /// Whether the request may be put on the wire more than once.
    [[nodiscard]] bool mayBeRepeated() const { return request.verb != HttpRequest::Verb::Post; }
    /// Notes that the exchange ends because the request must not be put on the wire again.
    void refuseRepetition();
    /// Notes how many bytes of the request's body have been sent so far.
    void noteSent(qsizetype bytes);
    /// Adds one header line; returns false when the headers exceed 64 KiB.
    bool addHeader(std::string_view line);
    /// Adds a part of the uncompressed body of the reply; returns false when the body exceeds 16 MiB.
    bool addBody(std::string_view part);

    /// The limit that expires next in the current phase of the exchange.
    [[nodiscard]] Limit nextLimit() const;
    /// Why this object has ended the exchange, in Russian; empty if it has not.
    [[nodiscard]] QString refusal() const { return cause; }
    [[nodiscard]] bool wasSent() const { return attempts > 0; }
    [[nodiscard]] bool wasRepeated() const { return attempts > 1; }
    /// Whether all headers of a final answer have arrived.
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
