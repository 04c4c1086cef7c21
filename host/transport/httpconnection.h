#pragma once

#include "host/transport/transportoptions.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <functional>
#include <memory>

namespace hostruntime {

struct HttpRequest
{
    enum class Verb
    {
        Get,
        Post
    };

    Verb verb = Verb::Get;
    /// Percent-encoded.
    QByteArray url;
    QHash<QString, QString> headers;
    QByteArray body;
};

struct HttpReply
{
    /// Why there is no reply; empty when there is one.
    QString failure;
    /// Whether any part of the request may have reached the peer.
    bool sent = false;
    int status = 0;
    QByteArray body;
};

/// Carries one request at a time over HTTP. One thread at a time.
///
/// A POST is put on the wire at most once. The connection is kept between exchanges, and KeptConnection says
/// when a POST may use it again; a GET whose kept connection turns out to be closed is repeated once.
class HttpConnection
{
public:
    static constexpr qsizetype maxBody = 16 * 1024 * 1024;
    static constexpr qsizetype maxHeaders = 64 * 1024;

    explicit HttpConnection(const TransportOptions& options);
    ~HttpConnection();
    Q_DISABLE_COPY_MOVE(HttpConnection)

    /// `beforeSending` is called before any part of the request may reach the peer; it must not throw.
    [[nodiscard]] HttpReply perform(const HttpRequest& request, const std::function<void()>& beforeSending);

private:
    class Session;
    std::unique_ptr<Session> session;
};

} // namespace hostruntime
