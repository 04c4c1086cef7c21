#include "host/transport/restclient.h"

#include "host/log/exchangelog.h"
#include "host/log/exchangesecrets.h"
#include "host/log/secrets.h"
#include "host/transport/httpconnection.h"
#include "host/transport/transportoptions.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QJsonParseError>
#include <QStringList>

#include <chrono>

using namespace Qt::Literals::StringLiterals;

using hostruntime::HttpConnection;
using hostruntime::HttpReply;
using hostruntime::HttpRequest;
using hostruntime::TransportOptions;

namespace secrets = hostruntime::secrets;

template <typename T>
T* MockFactory<T>::mocked = nullptr;

template <typename T>
QSharedPointer<T> MockFactory<T>::create()
{
    if (mocked)
        return QSharedPointer<T>(mocked, [](T*) {});
    return QSharedPointer<T>(new T);
}

template class MockFactory<RestClient>;

namespace {

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\r') || text.contains(u'\n');
}

// Why the request must not be sent; empty if it may be.
QString flaw(const QUrl& url)
{
    // The library would guess what is missing and might contact a host that nobody has named.
    const bool isHttp = url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
    return isHttp && !url.host().isEmpty() ? QString() : u"адрес не http и не https"_s;
}

QString flaw(const RestClient::Headers& headers)
{
    for (auto entry = headers.begin(); entry != headers.end(); ++entry) {
        if (hasLineBreak(entry.key()) || hasLineBreak(entry.value()))
            return u"перевод строки в заголовке "_s + entry.key().simplified();
    }
    return {};
}

// What an exchange needs of an address.
struct Address
{
    Address() = default;
    explicit Address(const QUrl& address)
        : url(address)
        , path(address.path())
        // The library would turn the user information into a header, which the caller has not asked for.
        , onTheWire(address.toEncoded(QUrl::RemoveUserInfo))
        , flaw(::flaw(address))
    {
    }

    QUrl url;
    QString path;
    QByteArray onTheWire;
    QString flaw;
};

struct Parsed
{
    QVariant value;
    // Why the value is of no use; empty if it is an object that is not empty.
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

struct RestClient::State
{
    explicit State(const TransportOptions& options)
        : connection(options)
        , proxyPasswords(secrets::passwordsIn(options.proxy))
    {
    }

    // Most exchanges have the headers of the one before.
    void lookAt(const Headers& headers)
    {
        if (headers == lastHeaders)
            return;
        lastHeaders = headers;
        flawOfHeaders = flaw(headers);
        tokens = secrets::tokensIn(headers);
    }

    // Receipts go to one address; their results have one each.
    void lookAt(const QUrl& url, HttpRequest::Verb verb)
    {
        if (verb == HttpRequest::Verb::Get)
            got = Address(url);
        else if (posted.onTheWire.isEmpty() || posted.url != url)
            posted = Address(url);
    }

    void addSecrets(const QUrl& url, const QByteArray& body) const
    {
        for (const QString& password : proxyPasswords)
            secrets::addCredential(password);
        // Again for each exchange: only so many values are remembered, those that were added last.
        for (const QString& token : tokens)
            secrets::addToken(token);
        secrets::addFromRequest(url, {}, body);
    }

    hostruntime::ExchangeLog log;
    HttpConnection connection;
    const QStringList proxyPasswords;
    QVariant response;
    QString failure;
    bool sent = false;
    QString flawOfHeaders;
    Address posted;
    Address got;

private:
    Headers lastHeaders;
    QStringList tokens;
};

RestClient::RestClient()
    : state(std::make_unique<State>(TransportOptions::defaults()))
{
}

RestClient::~RestClient() = default;

void RestClient::setLogger(const Log4Qt::Logger* logger)
{
    state->log.setLogger(logger);
}

void RestClient::setTargetAlias(const QString& alias)
{
    state->log.setPeer(alias);
}

bool RestClient::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    const QByteArray body = document.isEmpty() ? QByteArray() : document.toJson(QJsonDocument::Compact);
    state->lookAt(url, HttpRequest::Verb::Get);
    return exchange(url, {HttpRequest::Verb::Get, state->got.onTheWire, headers, body});
}

bool RestClient::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    state->lookAt(url, HttpRequest::Verb::Post);
    return exchange(url, {HttpRequest::Verb::Post, state->posted.onTheWire, headers, body});
}

QVariant RestClient::getResponseData() const
{
    return state->response;
}

bool RestClient::wasSent() const
{
    return state->sent;
}

QString RestClient::failure() const
{
    return state->failure;
}

std::optional<hostruntime::PeerCertificate> RestClient::certificate() const
{
    return state->connection.certificate();
}

bool RestClient::exchange(const QUrl& url, const HttpRequest& request)
{
    state->response.clear();
    state->lookAt(request.headers);
    state->addSecrets(url, request.body);
    const bool isPost = request.verb == HttpRequest::Verb::Post;
    const Address& address = isPost ? state->posted : state->got;
    // Without the query, where a caller may have put a token.
    const QString what = (isPost ? u"POST "_s : u"GET "_s) + address.path;
    state->log.logRequest(what, request.body);

    QElapsedTimer timer;
    timer.start();
    HttpReply reply;
    reply.failure = address.flaw;
    if (reply.failure.isEmpty())
        reply.failure = state->flawOfHeaders;
    if (reply.failure.isEmpty())
        reply = state->connection.perform(request, [this] { sending(); });
    state->sent = reply.sent;
    if (reply.failure.isEmpty()) {
        const auto [value, flawOfBody] = parsed(reply.body);
        state->response = value;
        if (!flawOfBody.isEmpty())
            reply.failure = u"HTTP %1, %2"_s.arg(reply.status).arg(flawOfBody);
    }
    secrets::addFromReply(reply.body, state->response);
    const std::chrono::milliseconds duration(timer.elapsed());
    state->log.logReply(what, reply.body);
    if (reply.failure.isEmpty())
        state->log.logSuccess(what, reply.status, reply.body.size(), duration);
    else
        state->log.logFailure(what, reply.failure, duration, reply.sent);
    state->failure = reply.failure;
    return reply.failure.isEmpty();
}

void RestClient::sending() {}
