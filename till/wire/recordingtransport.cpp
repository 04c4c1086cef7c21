#include "till/wire/recordingtransport.h"

#include <QVariantMap>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

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
    if (url.path().endsWith(u"getToken"_s)) {
        answer = QVariantMap{{u"token"_s, u"none"_s}};
        return true;
    }
    recorded = body;
    answer = QVariantMap{{u"uuid"_s, u"00000000-0000-0000-0000-000000000000"_s}, {u"status"_s, u"wait"_s}};
    return true;
}

} // namespace till
