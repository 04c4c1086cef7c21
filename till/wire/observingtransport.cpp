#include "till/wire/observingtransport.h"

#include "host/exceptions.h"
#include "till/text.h"

#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

bool rejectsToken(const ServiceAnswer& answer)
{
    if (!answer.hasError || answer.saysFailed())
        return false;
    // The driver may take an error whose code is not exact for one of these two.
    return !answer.errorCode || answer.errorCode == ServiceCode::UnknownToken ||
           answer.errorCode == ServiceCode::ExpiredToken;
}

QVariant asExpiredToken(const QVariant& body)
{
    QVariantMap answer = body.toMap();
    QVariantMap error = answer.value(u"error"_s).toMap();
    error.insert(u"code"_s, static_cast<int>(ServiceCode::ExpiredToken));
    answer.insert(u"error"_s, error);
    return answer;
}

} // namespace

ObservingTransport::ObservingTransport(TokenRenewals usedRenewals, Sleep usedSleep)
    : renewals(std::move(usedRenewals))
    , sleep(std::move(usedSleep))
{
}

void ObservingTransport::sleepFor(std::chrono::milliseconds time)
{
    std::this_thread::sleep_for(time);
}

void ObservingTransport::admit(const QUrl& url, const QByteArray& body) const
{
    if (gate)
        gate(url, body);
}

void ObservingTransport::noteHandedOver()
{
    const auto lock = hold();
    record.receiptSent = true;
    record.isLocal = true;
}

void ObservingTransport::startReceipt()
{
    renewals.forget();
    const auto lock = hold();
    record = {};
}

void ObservingTransport::resume(const Memory& memory)
{
    renewals = memory.renewals;
    const auto lock = hold();
    record = memory.record;
}

void ObservingTransport::startQuestion()
{
    forget(record.status);
}

bool ObservingTransport::get(const QUrl& url, const QJsonDocument& document, const Headers& headers)
{
    if (record.status.saysFailed())
        throw FrWorkWithServiceException(Text::tr("The service could not register the receipt"));
    carriesReceipt = false;
    questions.before();
    const bool hasArrived = exchangeWithToken(record.status, [&] {
        const bool arrived = RestClient::get(url, document, headers);
        recorded.add("GET", url, {}, RestClient::getResponseData(), failure());
        return arrived;
    });
    questions.after(record.status);
    return hasArrived;
}

bool ObservingTransport::post(const QUrl& url, const QByteArray& body, const Headers& headers)
{
    const auto request = [&] {
        if (carriesReceipt && gate)
            gate(url, body);
        const bool arrived = RestClient::post(url, body, headers);
        recorded.add("POST", url, body, RestClient::getResponseData(), failure());
        return arrived;
    };
    carriesReceipt = !url.path().endsWith(u"/getToken"_s);
    return carriesReceipt ? exchangeWithToken(record.registration, request) : exchangeToken(request);
}

QVariant ObservingTransport::getResponseData() const
{
    return substitute ? *substitute : RestClient::getResponseData();
}

bool ObservingTransport::exchangeToken(const std::function<bool()>& request)
{
    const auto pause = renewals.next();
    if (!pause) {
        giveUp(record.token);
        return false;
    }
    sleep(*pause);
    const bool arrived = exchange(record.token, request);
    if (record.token.holdsToken || record.token.errorCode)
        return arrived;
    substitute = QVariant();
    return false;
}

bool ObservingTransport::exchangeWithToken(ServiceAnswer& into, const std::function<bool()>& request)
{
    if (renewals.areExhausted()) {
        giveUp(into);
        return false;
    }
    const bool arrived = exchange(into, request);
    if (!into.arrived)
        return arrived;
    if (!rejectsToken(into)) {
        renewals.noteAccepted();
        return arrived;
    }
    // The driver takes this code for final.
    if (into.errorCode == ServiceCode::UnknownToken && !renewals.hasRenewed())
        substitute = asExpiredToken(RestClient::getResponseData());
    renewals.noteRejected();
    return arrived;
}

bool ObservingTransport::exchange(ServiceAnswer& into, const std::function<bool()>& request)
{
    substitute.reset();
    forget(into);
    const bool arrived = request();
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

void ObservingTransport::giveUp(ServiceAnswer& into)
{
    substitute = QVariant();
    const auto lock = hold();
    into = {};
    record.lastErrorCode.reset();
    record.lastAnswered = false;
    record.tokensRejected = true;
}

} // namespace till
