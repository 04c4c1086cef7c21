#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <chrono>

namespace Log4Qt {
class Logger;
}

namespace hostruntime {

/// The lines that a transport writes about its exchanges with one peer: one line for each exchange, at info
/// or error level, and its bodies at debug level.
///
/// `what` is the verb and the path of the request. Whoever calls has registered the secrets of the exchange
/// before (secrets.h). They are masked in path, bodies and causes; numbers and the peer's name are left as
/// they are.
class ExchangeLog
{
public:
    /// Borrowed; null for no log.
    void setLogger(const Log4Qt::Logger* value) { logger = value; }
    /// How the lines name the peer.
    void setPeer(const QString& name) { peer = name; }

    /// The body of a request; no line when it is empty.
    void logRequest(const QString& what, const QByteArray& body) const;
    /// The body of a reply; no line when it is empty.
    void logReply(const QString& what, const QByteArray& body) const;
    /// An exchange that has brought a reply with an HTTP status and `size` bytes.
    void logSuccess(
        const QString& what, int status, qsizetype size, std::chrono::milliseconds duration) const;
    /// An exchange that has failed; `sent` tells whether the peer may have got any part of the request.
    void logFailure(
        const QString& what, const QString& cause, std::chrono::milliseconds duration, bool sent) const;

private:
    const Log4Qt::Logger* logger = nullptr;
    QString peer;
};

} // namespace hostruntime
