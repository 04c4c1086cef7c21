#pragma once

#include "host/export.h"

#include <QString>

#include <chrono>

namespace hostruntime {

/// How a RestClient reaches its peer. There is no switch that turns certificate checks off.
///
/// Every limit is from 1 ms to 1 hour; a value outside is taken for the nearer end, so no wait is unlimited.
/// The default limits suit a till: a customer waits in front of it, and yet giving up on a receipt that is
/// under way leaves its outcome unknown, so being unreachable is found out soon and a slow answer is given
/// time.
struct HOST_EXPORT TransportOptions
{
    /// To find the address, connect and agree on TLS. Nothing has been sent when it runs out, so trying again
    /// is harmless. 10 s let a lost first packet be repeated three times (after 1, 3 and 7 s).
    std::chrono::milliseconds connect = std::chrono::seconds(10);
    /// From the request being handed over to the first header of the answer. The service queues a receipt
    /// well within a second; 30 s outlast a restart behind its load balancer.
    std::chrono::milliseconds firstByte = std::chrono::seconds(30);
    /// Without progress while the body is being sent or the answer is arriving. 15 s outlast a mobile link
    /// that changes its cell.
    std::chrono::milliseconds stall = std::chrono::seconds(15);
    /// For one call altogether, whatever the peer does.
    std::chrono::milliseconds overall = std::chrono::seconds(60);

    /// A file of authorities in PEM, trusted instead of the system's; empty for the system's.
    QString caFile;
    /// "http://[user:password@]host:port", also with https, socks4, socks5 or socks5h; empty for a direct
    /// connection. The environment's proxy variables are not read: a receipt goes only where the
    /// configuration says.
    QString proxy;
    /// The User-Agent header.
    QString userAgent = QStringLiteral("frdriver/1.0");
    /// Offers HTTP/2 where the connection is TLS. Off: one request at a time gains nothing from it.
    bool http2 = false;

    /// What each RestClient takes when it is created, also one that a plugin creates. Both calls may come
    /// from any thread; existing clients keep what they have.
    [[nodiscard]] static TransportOptions defaults();
    static void setDefaults(const TransportOptions& options);
};

} // namespace hostruntime
