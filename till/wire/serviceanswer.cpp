#include "till/wire/serviceanswer.h"

#include "host/log/secrets.h"
#include "till/wire/exactvalue.h"

#include <QTimeZone>

#include <algorithm>
#include <limits>

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

bool isError(const QVariant& error)
{
    return error.isValid() && !error.isNull() && error != QVariant(QVariantMap());
}

std::optional<ServiceCode> codeIn(const QVariantMap& error)
{
    using Limits = std::numeric_limits<int>;
    const auto code = exactInteger(error.value(u"code"_s), Limits::min(), Limits::max());
    return code ? std::optional(ServiceCode{static_cast<int>(*code)}) : std::nullopt;
}

QDateTime moscowTime(const QString& text)
{
    constexpr int offset = 3 * 3600;
    QDateTime time = QDateTime::fromString(text, u"dd.MM.yyyy hh:mm:ss"_s);
    if (time.isValid())
        time.setTimeZone(QTimeZone(offset));
    return time;
}

// Anything else cannot be sent back in a header.
bool isToken(const QString& text)
{
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    return !text.trimmed().isEmpty() && std::none_of(text.begin(), text.end(), isControl);
}

} // namespace

bool ServiceAnswer::saysFailed() const
{
    if (status != "fail"_L1)
        return false;
    if (!hasError || isOfRegister(errorType) || !externalId.isEmpty())
        return true;
    return errorCode && !uuid.isEmpty() && !meaningOf(*errorCode).concernsRequest;
}

ServiceAnswer readAnswer(const QVariant& body)
{
    const QVariantMap map = body.toMap();
    const QVariantMap error = map.value(u"error"_s).toMap();
    ServiceAnswer answer;
    answer.arrived = !map.isEmpty();
    answer.uuid = exactText(map.value(u"uuid"_s));
    answer.externalId = exactText(map.value(u"external_id"_s));
    answer.status = exactText(map.value(u"status"_s));
    answer.hasError = isError(map.value(u"error"_s));
    answer.errorCode = codeIn(error);
    answer.errorType = exactText(error.value(u"type"_s));
    answer.errorText = secrets::masked(exactText(error.value(u"text"_s)), secrets::Audience::Developer);
    answer.errorId = secrets::masked(exactText(error.value(u"error_id"_s)), secrets::Audience::Developer);
    answer.holdsToken = isToken(exactText(map.value(u"token"_s)));
    answer.time = moscowTime(exactText(map.value(u"timestamp"_s)));
    answer.payload = map.value(u"payload"_s).toMap();
    return answer;
}

} // namespace till
