#pragma once

#include "host/export.h"
#include "host/log/exchangelog.h"
#include "host/log/log4qt.h"
#include "host/mockfactory.h"

#include <QByteArray>
#include <QHash>
#include <QJsonDocument>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <memory>

namespace hostruntime {
class HttpConnection;
struct HttpRequest;
struct TransportOptions;
} // namespace hostruntime

/// A blocking HTTP client for JSON services.
///
/// A call returns when the answer has arrived or the exchange has failed, in any case within the limits of
/// hostruntime::TransportOptions::defaults() as they were when the client was created. It runs no event loop
/// and needs none, and installs no signal handlers. One thread at a time may use an object, several objects
/// may be used in several threads at once.
///
/// Repeating a request is a decision about money, so it is never made here: **one call of post() puts at most
/// one request on the wire**. The connection is kept between calls; a post() uses it again only where
/// KeptConnection finds that safe. A get() whose kept connection was closed is repeated once. Redirects are
/// not followed, so a receipt and a token go only where the caller says. Certificates and host names are
/// always checked, against TLS 1.2 or newer.
///
/// Nothing but std::bad_alloc is thrown. Any failure (no connection, a limit run out, a body that is not JSON
/// or is over 16 MiB, headers over 64 KiB) is an empty reply.
///
/// The log holds one line for each exchange, at info level with status, size and duration, or at error level
/// with the cause, the duration and whether the request was sent; and the bodies at debug level. The token
/// header, the key "pass" of a request and the key "token" of a reply become known to secrets.h as
/// credentials, and so does the proxy's password; the buyer's contact in a receipt as personal.
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

    /// Sends a GET; a document that is not empty travels as the body. Returns whether the reply is a JSON
    /// object that is not empty.
    virtual bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers);
    /// Sends a POST. Returns the same.
    virtual bool post(const QUrl& url, const QByteArray& body, const Headers& headers);
    /// The last reply's body, whatever the HTTP status, parsed from JSON into Qt's variant types. Integers
    /// from -2^63 to 2^63-1 stay exact, other numbers are doubles; of equal keys the last counts. Invalid
    /// when there is no body, when it is not JSON or is nested more than 1024 levels deep.
    [[nodiscard]] virtual QVariant getResponseData() const;

    /// Whether any part of the last request may have reached the peer. False is certain: the service knows
    /// nothing of it, and repeating it is harmless.
    [[nodiscard]] bool wasSent() const { return sent; }

protected:
    /// Called within an exchange, just before any part of the request may reach the peer; not called for a
    /// request that never gets so far. Must not throw. Does nothing here.
    virtual void sending();

private:
    explicit RestClient(const hostruntime::TransportOptions& options);

    bool exchange(const QUrl& url, const hostruntime::HttpRequest& request);

    hostruntime::ExchangeLog log;
    std::unique_ptr<hostruntime::HttpConnection> connection;
    QStringList proxyPasswords;
    QVariant response;
    bool sent = false;
};

extern template class HOST_EXPORT MockFactory<RestClient>;
