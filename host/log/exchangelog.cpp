#include "host/log/exchangelog.h"

#include "host/log/log4qt.h"
#include "host/log/secrets.h"

#include <algorithm>

namespace hostruntime {

using namespace Qt::Literals::StringLiterals;

namespace {

using secrets::Audience;

// Of a longer body, the log shows the beginning.
constexpr qsizetype longestLogged = 16 * 1024;

// Secrets are masked before the body is cut, so that none is cut in two.
QString inOneLine(const QByteArray& body)
{
    QString text = secrets::masked(QString::fromUtf8(body), Audience::Developer);
    if (text.size() > longestLogged)
        text = text.first(longestLogged) + u"…"_s;
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, u' ');
    return text;
}

} // namespace

void ExchangeLog::logRequest(const QString& what, const QByteArray& body) const
{
    if (logger && logger->isDebugEnabled() && !body.isEmpty())
        logger->writeAsIs(QtDebugMsg,
            u"%1: запрос %2: "_s.arg(peer, secrets::masked(what, Audience::Developer)) + inOneLine(body));
}

void ExchangeLog::logReply(const QString& what, const QByteArray& body) const
{
    if (logger && logger->isDebugEnabled() && !body.isEmpty())
        logger->writeAsIs(QtDebugMsg,
            u"%1: ответ на %2: "_s.arg(peer, secrets::masked(what, Audience::Developer)) + inOneLine(body));
}

void ExchangeLog::logSuccess(
    const QString& what, int status, qsizetype size, std::chrono::milliseconds duration) const
{
    if (logger && logger->isInfoEnabled())
        logger->writeAsIs(QtInfoMsg,
            u"%1: %2: HTTP %3, %4 байт, %5 мс"_s.arg(peer, secrets::masked(what, Audience::Anyone),
                QString::number(status), QString::number(size), QString::number(duration.count())));
}

void ExchangeLog::logFailure(
    const QString& what, const QString& cause, std::chrono::milliseconds duration, bool sent) const
{
    if (!logger)
        return;
    const QString fate = sent ? u"запрос отправлен"_s : u"запрос не отправлен"_s;
    logger->writeAsIs(QtCriticalMsg,
        u"%1: нет ответа на %2: %3 (%4 мс, %5)"_s.arg(peer, secrets::masked(what, Audience::Anyone),
            secrets::masked(cause, Audience::Anyone), QString::number(duration.count()), fate));
}

} // namespace hostruntime
