#include "tests/support/scriptedtransport.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;

QJsonObject ScriptedTransport::Request::json() const
{
    return QJsonDocument::fromJson(body).object();
}

ScriptedTransport::ScriptedTransport()
{
    MockFactory<RestClient>::mocked = this;
}

ScriptedTransport::~ScriptedTransport()
{
    MockFactory<RestClient>::mocked = nullptr;
}

void ScriptedTransport::answer(const QByteArray& json)
{
    queue.append(json);
}

void ScriptedTransport::dropAnswer()
{
    queue.append(QByteArray());
}

QStringList ScriptedTransport::requestLines() const
{
    QStringList lines;
    for (const Request& request : sent)
        lines << request.verb + u' ' + request.url;
    return lines;
}

bool ScriptedTransport::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    const QByteArray body = document.isEmpty() ? QByteArray() : document.toJson(QJsonDocument::Compact);
    return exchange({u"GET"_s, url.toString(), body, headers});
}

bool ScriptedTransport::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    return exchange({u"POST"_s, url.toString(), body, headers});
}

QVariant ScriptedTransport::getResponseData() const
{
    return response;
}

bool ScriptedTransport::exchange(const Request& request)
{
    sent.append(request);
    const QByteArray body = queue.isEmpty()
                                ? QByteArray(R"({"error":{"code":0,"text":"nothing was queued"}})")
                                : queue.takeFirst();
    response = QJsonDocument::fromJson(body).toVariant();
    return response.isValid();
}
