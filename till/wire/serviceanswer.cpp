#include "till/wire/serviceanswer.h"

#include "host/log/secrets.h"

#include <QVariantMap>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

// Codes of the service itself that concern the request, not the document that it asks about. The register
// behind the service has codes of its own in the same range; the error's type tells them apart.
constexpr std::array requestErrors{0, 10, 11, 12, 13, 14, 20, 21, 30, 31, 33, 34, 40, 41, 50};

bool isOfRegister(const QString& errorType)
{
    return errorType == u"driver"_s || errorType == u"agent"_s || errorType == u"timeout"_s;
}

} // namespace

bool ServiceAnswer::saysFailed() const
{
    if (status != u"fail"_s)
        return false;
    if (!errorCode || isOfRegister(errorType) || !externalId.isEmpty())
        return true;
    const bool isAboutRequest =
        std::find(requestErrors.begin(), requestErrors.end(), *errorCode) != requestErrors.end();
    return !uuid.isEmpty() && !isAboutRequest;
}

ServiceAnswer readAnswer(const QVariant& body)
{
    const QVariantMap map = body.toMap();
    const QVariantMap error = map.value(u"error"_s).toMap();
    const auto text = [](const QVariantMap& from, const char* key) {
        return from.value(QString::fromLatin1(key)).toString();
    };
    ServiceAnswer answer;
    answer.arrived = !map.isEmpty();
    answer.uuid = text(map, "uuid");
    answer.externalId = text(map, "external_id");
    answer.status = text(map, "status");
    if (const QVariant code = error.value(u"code"_s); code.isValid())
        answer.errorCode = code.toInt();
    answer.errorType = text(error, "type");
    answer.errorText = secrets::masked(text(error, "text"), secrets::Audience::Developer);
    return answer;
}

} // namespace frhost
