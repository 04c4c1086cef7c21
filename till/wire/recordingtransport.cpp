#include "till/wire/recordingtransport.h"

#include <QVariantMap>

#include <utility>

namespace frhost {

QByteArray RecordingTransport::takeBody()
{
    return std::exchange(recorded, {});
}

bool RecordingTransport::get(const QUrl&, const QJsonDocument&, const Headers&)
{
    answer = {};
    return false;
}

bool RecordingTransport::post(const QUrl& url, const QByteArray& body, const Headers&)
{
    if (url.path().endsWith(QStringLiteral("getToken"))) {
        answer = QVariantMap{{QStringLiteral("token"), QStringLiteral("none")}};
        return true;
    }
    recorded = body;
    answer = QVariantMap{{QStringLiteral("uuid"), QStringLiteral("00000000-0000-0000-0000-000000000000")},
        {QStringLiteral("status"), QStringLiteral("wait")}};
    return true;
}

} // namespace frhost
