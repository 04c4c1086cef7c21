#include "till/journal/composedreceipt.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// Without the operation, the last step of the path.
QString registerOf(const QUrl& url)
{
    return url
        .adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::StripTrailingSlash |
                  QUrl::RemoveFilename)
        .adjusted(QUrl::StripTrailingSlash)
        .toString(QUrl::FullyEncoded);
}

} // namespace

ComposedReceipt readComposed(const QUrl& url, const QByteArray& body)
{
    QJsonObject content = QJsonDocument::fromJson(body).object();
    const QString id = content.take("external_id"_L1).toString();
    content.remove("timestamp"_L1);
    // A return of goods is not their sale.
    content.insert("operation"_L1, url.fileName());
    // A JSON object of Qt is sorted by its keys.
    const QByteArray canonical = QJsonDocument(content).toJson(QJsonDocument::Compact);
    return {registerOf(url), id, QCryptographicHash::hash(canonical, QCryptographicHash::Blake2b_256)};
}

} // namespace till
