#include "bench/baselines/qnam.h"

#include "bench/baselines/qjsonsale.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>

#include <memory>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

QByteArray finished(QNetworkReply* raw)
{
    const std::unique_ptr<QNetworkReply> reply(raw);
    if (!reply->isFinished()) {
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    if (reply->error() != QNetworkReply::NoError)
        throw std::runtime_error(reply->errorString().toStdString());
    return reply->readAll();
}

} // namespace

Qnam::Qnam(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
    , base(QString::fromStdString(endpoint.url()))
    , group(base + QLatin1StringView(groupCode))
{
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json; charset=utf-8"_s);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    if (endpoint.isTls()) {
        QSslConfiguration trust = request.sslConfiguration();
        trust.setCaCertificates(QSslCertificate::fromPath(QString::fromStdString(endpoint.caFile)));
        request.setSslConfiguration(trust);
    }
    const QByteArray answer = post(base + "getToken"_L1, R"({"login":"bench","pass":"bench"})");
    request.setRawHeader("token", QJsonDocument::fromJson(answer)["token"_L1].toString().toUtf8());
}

std::int64_t Qnam::registerSale()
{
    const QJsonDocument accepted = QJsonDocument::fromJson(post(group + "/sell"_L1, qjsonText(sale)));
    const QString uuid = accepted["uuid"_L1].toString();
    const QJsonDocument done = QJsonDocument::fromJson(get(group + "/report/"_L1 + uuid));
    return done["payload"_L1]["fiscal_document_attribute"_L1].toInteger();
}

QByteArray Qnam::post(const QString& path, const QByteArray& body)
{
    request.setUrl(QUrl(path));
    return finished(manager.post(request, body));
}

QByteArray Qnam::get(const QString& path)
{
    request.setUrl(QUrl(path));
    return finished(manager.get(request));
}

} // namespace bench
