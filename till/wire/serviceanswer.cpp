#include "till/wire/serviceanswer.h"

#include "host/log/secrets.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

namespace secrets = hostruntime::secrets;

// The register that the service uses has codes of its own in the range of the service's; the error's type
// tells them apart.
bool isOfRegister(const QString& errorType)
{
    return errorType == "driver"_L1 || errorType == "agent"_L1 || errorType == "timeout"_L1;
}

} // namespace

bool ServiceAnswer::saysFailed() const
{
    if (status != "fail"_L1)
        return false;
    if (!errorCode || isOfRegister(errorType) || !externalId.isEmpty())
        return true;
    return !uuid.isEmpty() && !meaningOf(*errorCode).concernsRequest;
}

ServiceAnswer readAnswer(const QVariant& body)
{
    const QVariantMap map = body.toMap();
    const QVariantMap error = map.value(u"error"_s).toMap();
    ServiceAnswer answer;
    answer.arrived = !map.isEmpty();
    answer.uuid = map.value(u"uuid"_s).toString();
    answer.externalId = map.value(u"external_id"_s).toString();
    answer.status = map.value(u"status"_s).toString();
    if (const QVariant code = error.value(u"code"_s); code.isValid())
        answer.errorCode = ServiceCode{code.toInt()};
    answer.errorType = error.value(u"type"_s).toString();
    answer.errorText = secrets::masked(error.value(u"text"_s).toString(), secrets::Audience::Developer);
    answer.payload = map.value(u"payload"_s).toMap();
    return answer;
}

} // namespace till
