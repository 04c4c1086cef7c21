#include "host/transport/restclient.h"

#include <QHash>
#include <QJsonDocument>
#include <QVariant>

using namespace Qt::StringLiterals;

void RestClient::get(const QUrl& url, const QJsonDocument& document, const QHash<QString, QString>& headers)
{
    requests.append({url, document.toJson(), headers.value(u"token"_s).toUtf8()});
}

void RestClient::post(const QUrl& url, const QByteArray& body, const QHash<QString, QString>& headers)
{
    requests.append({url, body, headers.value(u"token"_s).toUtf8()});
}

QVariant RestClient::getResponseData()
{
    return script.isEmpty() ? QVariant() : QJsonDocument::fromJson(script.takeFirst()).toVariant();
}
