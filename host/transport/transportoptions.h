#pragma once

#include "host/export.h"

#include <QString>

#include <chrono>

/// The runtime behind the contract: everything in the host's library that a vendor's headers do not declare.
namespace hostruntime {

/// How a RestClient reaches its peer. Certificate checks cannot be turned off.
///
/// Every limit is between 1 ms and 1 hour; a value outside is replaced by the nearer bound, so no wait is
/// unlimited. The defaults suit a till where a customer is waiting: that the service is unreachable is found
/// out soon, but a slow answer is given time, because giving up on a receipt that has been sent leaves its
/// outcome unknown.
struct HOST_EXPORT TransportOptions
{
    /// For name resolution, the connection and the TLS handshake. Nothing has been sent when it expires, so
    /// trying again is harmless. Within 10 s a lost first packet is repeated three times (after 1, 3 and 7
    /// s).
    std::chrono::milliseconds connect = std::chrono::seconds(10);
    /// From the end of the request to the first header of the answer. The service queues a receipt well
    /// within a second; 30 s outlast a restart behind its load balancer.
    std::chrono::milliseconds firstByte = std::chrono::seconds(30);
    /// Without progress while the request is being sent or the answer is arriving. 15 s outlast a mobile link
    /// that changes its cell.
    std::chrono::milliseconds stall = std::chrono::seconds(15);
    /// For a whole call, whatever the peer does.
    std::chrono::milliseconds overall = std::chrono::seconds(60);

    /// A PEM file of certificate authorities to trust instead of the system's; empty for the system's.
    QString caFile;
    /// "http://[user:password@]host:port", or the same with https, socks4, socks5 or socks5h; empty for a
    /// direct connection. The environment's proxy variables are not read: a receipt goes only where the
    /// configuration says.
    QString proxy;
    /// The User-Agent header.
    QString userAgent = QStringLiteral("frdriver/1.0");
    /// Whether to offer HTTP/2 on TLS connections. Off, because one request at a time gains nothing from it.
    bool http2 = false;
    /// Whether to keep the certificate that the server shows; costs time in each TLS handshake.
    bool keepCertificate = false;

    /// The options of each RestClient that is created from now on, even by a plugin; existing clients keep
    /// theirs. Thread-safe.
    [[nodiscard]] static TransportOptions defaults();
    static void setDefaults(const TransportOptions& options);
};

} // namespace hostruntime
