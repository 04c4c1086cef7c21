#include "hostcli/observingtransport.h"

#include "host/exceptions.h"
#include "hostcli/text.h"

namespace frhost {

bool ObservingTransport::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    if (exchange.status.saysFailed())
        throw FrWorkWithServiceException(Text::tr("The service could not register the receipt"));
    exchange.status = {};
    const bool arrived = RestClient::get(url, document, headers);
    note(exchange.status);
    return arrived;
}

bool ObservingTransport::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    const bool isToken = url.path().endsWith(QStringLiteral("/getToken"));
    ServiceAnswer& into = isToken ? exchange.token : exchange.registration;
    into = {};
    const bool arrived = RestClient::post(url, body, headers);
    if (!isToken && wasSent())
        exchange.receiptSent = true;
    note(into);
    return arrived;
}

void ObservingTransport::note(ServiceAnswer& into)
{
    into = readAnswer(getResponseData());
    exchange.lastErrorCode = into.errorCode;
    exchange.lastAnswered = into.arrived;
}

} // namespace frhost
