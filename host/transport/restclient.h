#pragma once

#include "host/export.h"
#include "host/mockfactory.h"
#include "host/transport/peercertificate.h"

#include <QByteArray>
#include <QHash>
#include <QJsonDocument>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <memory>
#include <optional>

namespace Log4Qt {
class Logger;
}

namespace hostruntime {
struct HttpRequest;
}

/// A blocking HTTP client for JSON services.
///
/// A call returns when the answer has arrived or the exchange has failed, at the latest when a limit expires:
/// those of hostruntime::TransportOptions::defaults() when the client was created. It neither runs nor needs
/// an event loop, and installs no signal handlers. An object may be used by one thread at a time; several
/// objects may be used in several threads at once.
///
/// Repeating a request is a decision about money, so it is never made here: **one call of post() puts at most
/// one request on the wire**. The connection is kept between calls; post() uses it again only if
/// hostruntime::KeptConnection considers that safe. A get() whose kept connection turns out to be closed is
/// repeated once. A connection that has been idle for too long is closed by a thread that receives no signals
/// and ends when no connection is left (host/transport/idlehandles.h). Redirects are not followed, so
/// receipts and tokens go only where the caller sends them. TLS is version 1.2 or newer; certificates and
/// host names are always checked.
///
/// The user information of an address ("user:password@") is not sent in any form; who asks is said in the
/// headers. Nothing else of an address is changed.
///
/// Only std::bad_alloc is thrown. After any other failure (no connection, an expired limit, a body that is
/// not JSON or exceeds 16 MiB, headers over 64 KiB) the reply is empty.
///
/// Each exchange writes one line to the log: at info level with status, size and duration, or at error level
/// with the cause, the duration and whether the request was sent. The bodies are logged at debug level. The
/// secrets of the exchange (host/log/exchangesecrets.h) and the proxy's password are registered first, and so
/// masked.
class HOST_EXPORT RestClient : public QObject
{
    Q_OBJECT
public:
    using Headers = QHash<QString, QString>;

    RestClient();
    ~RestClient() override;

    /// Borrowed; must outlive the client. Null for no log.
    void setLogger(const Log4Qt::Logger* logger);
    /// Name of the peer in log lines.
    void setTargetAlias(const QString& alias);

    /// Sends a GET, with the document as its body unless that is empty. Blocks. Returns whether the reply is
    /// a JSON object that is not empty.
    virtual bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers);
    /// Sends a POST. Blocks; returns the same as get().
    virtual bool post(const QUrl& url, const QByteArray& body, const Headers& headers);
    /// The body of the last reply, whatever its HTTP status, parsed from JSON into Qt's variant types.
    /// Integers from -2^63 to 2^63-1 are exact, other numbers are doubles; the last of equal keys counts.
    /// Invalid when there is no body, or when it is not JSON or is nested more than 1024 levels deep.
    virtual QVariant getResponseData() const;

    /// Whether any part of the last request may have reached the peer. False is certain: the peer knows
    /// nothing of the request, so repeating it is harmless.
    [[nodiscard]] bool wasSent() const;
    /// Why the last exchange has failed, in the words of its log line; empty if it has not.
    [[nodiscard]] QString failure() const;
    /// What the server showed in the last TLS handshake, where TransportOptions::keepCertificate was on when
    /// the client was created; none otherwise, and none without TLS.
    [[nodiscard]] std::optional<hostruntime::PeerCertificate> certificate() const;

protected:
    /// Called each time a request is about to be put on the wire, before any part of it can reach the peer;
    /// not called for a request that fails earlier. Must not throw. The default does nothing.
    virtual void sending();

private:
    struct State;

    bool exchange(const QUrl& url, const hostruntime::HttpRequest& request);

    // The only data member, so that more state neither changes the size of a client nor moves a subclass's
    // members.
    std::unique_ptr<State> state;
};

extern template class HOST_EXPORT MockFactory<RestClient>;
