#include "till/wire/observingtransport.h"

#include "host/exceptions.h"
#include "till/text.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

void ObservingTransport::startReceipt()
{
    const auto lock = hold();
    record = {};
}

bool ObservingTransport::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    if (record.status.saysFailed())
        throw FrWorkWithServiceException(Text::tr("The service could not register the receipt"));
    carriesReceipt = false;
    forget(record.status);
    const bool arrived = RestClient::get(url, document, headers);
    note(record.status);
    return arrived;
}

bool ObservingTransport::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    carriesReceipt = !url.path().endsWith(u"/getToken"_s);
    ServiceAnswer& into = carriesReceipt ? record.registration : record.token;
    forget(into);
    const bool arrived = RestClient::post(url, body, headers);
    note(into);
    return arrived;
}

void ObservingTransport::sending()
{
    const auto lock = hold();
    if (carriesReceipt)
        record.receiptSent = true;
}

void ObservingTransport::forget(ServiceAnswer& answer)
{
    const auto lock = hold();
    answer = {};
}

void ObservingTransport::note(ServiceAnswer& into)
{
    const ServiceAnswer answer = readAnswer(getResponseData());
    const auto lock = hold();
    into = answer;
    record.lastErrorCode = into.errorCode;
    record.lastAnswered = into.arrived;
}

} // namespace till
