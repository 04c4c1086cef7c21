#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace hostruntime {

/// What is sent in one exchange.
struct HttpRequest
{
    enum class Verb
    {
        Get,
        Post
    };

    Verb verb = Verb::Get;
    /// Percent-encoded, without user information.
    QByteArray url;
    QHash<QString, QString> headers;
    QByteArray body;
};

/// What came of one exchange.
struct HttpReply
{
    /// Why there is no reply, in Russian; empty when there is one.
    QString failure;
    /// Whether any part of the request may have reached the peer.
    bool sent = false;
    /// The HTTP status; 0 when none has arrived.
    int status = 0;
    /// Uncompressed.
    QByteArray body;
};

} // namespace hostruntime
