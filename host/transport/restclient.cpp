#include "host/transport/restclient.h"

#include "host/log/secrets.h"
#include "host/transport/httpconnection.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

using hostruntime::HttpConnection;
using hostruntime::HttpReply;
using hostruntime::HttpRequest;
using hostruntime::TransportOptions;

namespace secrets = hostruntime::secrets;

template class MockFactory<RestClient>;

namespace {

// Of a longer body, the log shows the beginning.
constexpr qsizetype longestLogged = 16 * 1024;

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\r') || text.contains(u'\n');
}

// Why the request must not be tried; empty when it may be.
QString flaw(const QUrl& url, const RestClient::Headers& headers)
{
    // The library would guess what is missing and go to a host of its own invention.
    if ((url.scheme() != "http"_L1 && url.scheme() != "https"_L1) || url.host().isEmpty())
        return u"адрес не http и не https"_s;
    for (auto entry = headers.begin(); entry != headers.end(); ++entry) {
        if (hasLineBreak(entry.key()) || hasLineBreak(entry.value()))
            return u"перевод строки в заголовке "_s + entry.key().simplified();
    }
    return {};
}

// The "client" object of a receipt. A long receipt takes longer to parse than to compose, so where the name
// stands in the text only once, only its object is parsed.
QJsonObject buyerOf(const QByteArray& receipt)
{
    static const QByteArray name = "\"client\"";
    const qsizetype at = receipt.indexOf(name);
    const qsizetype from = at + name.size() + 1;
    if (at >= 0 && receipt.indexOf(name, from) < 0) {
        const qsizetype end = receipt.indexOf('}', from) + 1;
        const auto buyer = QJsonDocument::fromJson(receipt.mid(from, end - from));
        if (buyer.isObject())
            return buyer.object();
    }
    return QJsonDocument::fromJson(receipt)["receipt"_L1]["client"_L1].toObject();
}

// The password in the address of a proxy, as it stands there and as it is meant.
QStringList passwordsOf(const QString& proxy)
{
    const qsizetype scheme = proxy.indexOf("://"_L1);
    const QString user = proxy.first(qMax<qsizetype>(0, proxy.lastIndexOf(u'@')));
    const qsizetype colon = user.indexOf(u':', scheme < 0 ? 0 : scheme + 3);
    if (colon < 0)
        return {};
    const QString password = user.sliced(colon + 1);
    return {password, QUrl::fromPercentEncoding(password.toUtf8())};
}

void registerSecrets(const HttpRequest& request, const QUrl& url)
{
    secrets::addCredential(url.password());
    for (auto entry = request.headers.begin(); entry != request.headers.end(); ++entry) {
        if (entry.key().compare("token"_L1, Qt::CaseInsensitive) == 0)
            secrets::addCredential(entry.value());
    }
    if (request.body.isEmpty())
        return;
    if (request.body.contains("\"pass\"")) {
        const QJsonDocument credentials = QJsonDocument::fromJson(request.body);
        secrets::addCredential(credentials["pass"_L1].toString());
        secrets::addPersonal(credentials["login"_L1].toString());
    }
    const QJsonObject buyer = buyerOf(request.body);
    secrets::addPersonal(buyer["email"_L1].toString());
    secrets::addPersonal(buyer["phone"_L1].toString());
}

// A reply that cannot be parsed, a cut one say, may hold a token all the same.
void registerSecrets(const HttpReply& reply, const QVariant& parsed)
{
    if (parsed.isValid()) {
        secrets::addCredential(parsed.toMap().value(u"token"_s).toString());
        return;
    }
    static const QRegularExpression token(uR"x("token"\s*:\s*"((?:[^"\\]|\\.)*+))x"_s);
    auto found = token.globalMatch(QString::fromUtf8(reply.body));
    while (found.hasNext())
        secrets::addCredential(found.next().captured(1));
}

// A body as one line of a log. Secrets are masked before it is cut, so that none is cut in two.
QString inOneLine(const QByteArray& body)
{
    QString text = secrets::masked(QString::fromUtf8(body), secrets::Audience::Developer);
    if (text.size() > longestLogged)
        text = text.first(longestLogged) + u"…"_s;
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, u' ');
    return text;
}

struct Parsed
{
    QVariant value;
    /// Why nobody can use the value; empty when it is an object with something in it.
    QString failure;
};

Parsed parsed(const QByteArray& body)
{
    if (body.isEmpty())
        return {{}, u"пустое тело"_s};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        return {{}, u"тело не JSON: "_s + error.errorString()};
    return {document.toVariant(), document.object().isEmpty() ? u"тело не объект или пустое"_s : QString()};
}

} // namespace

RestClient::RestClient()
    : RestClient(TransportOptions::defaults())
{
}

RestClient::RestClient(const TransportOptions& options)
    : connection(std::make_unique<HttpConnection>(options))
    , proxyPasswords(passwordsOf(options.proxy))
{
}

RestClient::~RestClient() = default;

void RestClient::setLogger(const Log4Qt::Logger* value)
{
    logger = value;
}

void RestClient::setTargetAlias(const QString& value)
{
    alias = value;
}

bool RestClient::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    const QByteArray body = document.isEmpty() ? QByteArray() : document.toJson(QJsonDocument::Compact);
    return exchange(url, {HttpRequest::Verb::Get, url.toEncoded(), headers, body});
}

bool RestClient::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    return exchange(url, {HttpRequest::Verb::Post, url.toEncoded(), headers, body});
}

QVariant RestClient::getResponseData() const
{
    return response;
}

bool RestClient::exchange(const QUrl& url, const HttpRequest& request)
{
    response.clear();
    for (const QString& password : proxyPasswords)
        secrets::addCredential(password);
    registerSecrets(request, url);
    // The query is left out: a caller may carry a token there.
    const QString what = (request.verb == HttpRequest::Verb::Post ? u"POST "_s : u"GET "_s) + url.path();
    if (logger && logger->isDebugEnabled() && !request.body.isEmpty())
        logger->debug("%1", u"%1: запрос %2: "_s.arg(alias, what) + inOneLine(request.body));

    QElapsedTimer timer;
    timer.start();
    HttpReply reply;
    reply.failure = flaw(url, request.headers);
    if (reply.failure.isEmpty())
        reply = connection->perform(request, [this] { sending(); });
    sent = reply.sent;
    if (reply.failure.isEmpty()) {
        const auto [value, failure] = parsed(reply.body);
        response = value;
        if (!failure.isEmpty())
            reply.failure = u"HTTP %1, %2"_s.arg(reply.status).arg(failure);
    }
    registerSecrets(reply, response);
    report(what, reply, timer.elapsed());
    return reply.failure.isEmpty();
}

void RestClient::sending() {}

void RestClient::report(const QString& what, const HttpReply& reply, qint64 milliseconds) const
{
    if (!logger)
        return;
    if (logger->isDebugEnabled() && !reply.body.isEmpty())
        logger->debug("%1", u"%1: ответ на %2: "_s.arg(alias, what) + inOneLine(reply.body));
    if (reply.failure.isEmpty()) {
        if (logger->isInfoEnabled())
            logger->info("%1", u"%1: %2: HTTP %3, %4 байт, %5 мс"_s.arg(alias, what)
                                   .arg(reply.status)
                                   .arg(reply.body.size())
                                   .arg(milliseconds));
        return;
    }
    const QString fate = sent ? u"запрос отправлен"_s : u"запрос не отправлен"_s;
    logger->error("%1: нет ответа на %2: %3", alias, what,
        u"%1 (%2 мс, %3)"_s.arg(reply.failure, QString::number(milliseconds), fate));
}
