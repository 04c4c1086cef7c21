#pragma once

#include "host/export.h"
#include "host/log4qt.h"
#include "host/mockfactory.h"

#include <QByteArray>
#include <QHash>
#include <QJsonDocument>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <memory>

/// A blocking HTTP client for JSON services.
///
/// A call returns when the answer has arrived or the exchange has failed; it runs no event loop and needs
/// none. One thread at a time may use an object, several objects may be used in several threads at once. The
/// connection is kept between calls.
///
/// Repeating a request is a decision about money, so it is never made here: **one call of post() puts at most
/// one request on the wire**, also when a kept connection turns out to be broken. A get() may be repeated
/// once by the HTTP library. Redirects are not followed, so a receipt and a token go only where the caller
/// says. Certificates and host names are always checked.
///
/// Nothing is thrown. Any failure (no connection, time-out, a body that is not JSON or is over 16 MiB) is an
/// empty reply and one line at error level in the logger.
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

    /// Sends a GET; a document that is not empty travels as the body. Returns whether there is a reply.
    virtual bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers);
    /// Sends a POST. Returns whether there is a reply.
    virtual bool post(const QUrl& url, const QByteArray& body, const Headers& headers);
    /// The last reply's body, whatever the HTTP status, parsed from JSON into Qt's variant types; integers of
    /// up to 64 bits stay exact. Invalid when there is none.
    [[nodiscard]] virtual QVariant getResponseData() const;

private:
    class Connection;

    bool exchange(const char* verb, const QUrl& url, const QByteArray& body, const Headers& headers);

    const Log4Qt::Logger* logger = nullptr;
    QString alias;
    std::unique_ptr<Connection> connection;
    QVariant response;
};

extern template class HOST_EXPORT MockFactory<RestClient>;
