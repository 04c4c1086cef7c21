#include "atolonline/commandprocessor.h"

#include "atolonline/compactjson.h"
#include "atolonline/exceptionfactory.h"
#include "atolonline/exceptions.h"
#include "atolonline/receiptcomposer.h"
#include "atolonline/requisitetags.h"
#include "host/exceptions.h"
#include "host/log/log4qt.h"
#include "host/mockfactory.h"
#include "host/records/taxsystem.h"
#include "host/tr.h"
#include "host/transport/restclient.h"
#include "plugin/atolonlinesettings.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>
#include <QVariant>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace atolonline {

using namespace Qt::Literals::StringLiterals;

namespace {

QUrl address(const QString& text)
{
    return QUrl(text, QUrl::TolerantMode);
}

// Most of the time of QDateTime::toString() goes into reading the format.
QString serviceTime(const QDateTime& time)
{
    const QDate day = time.date();
    const QTime clock = time.time();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d.%02d.%04d %02d:%02d:%02d", day.day(), day.month(),
        day.year(), clock.hour(), clock.minute(), clock.second());
    return QString::fromLatin1(text.data());
}

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\r') || text.contains(u'\n');
}

// QVariant::toInt() would fold a number that is not an int into one that is, and so into the code of another
// error or of none.
int codeOf(const QVariant& code)
{
    const double number = code.toDouble();
    const bool isInt = number >= std::numeric_limits<int>::min() &&
                       number <= std::numeric_limits<int>::max() && number == std::trunc(number);
    return isInt ? code.toInt() : 0;
}

} // namespace

CommandProcessor::CommandProcessor(const Log4Qt::Logger* log)
    : restClient(MockFactory<RestClient>::create())
    , logger(log)
{
    restClient->setLogger(logger);
    restClient->setTargetAlias(u"Атол.Онлайн"_s);
    headers.insert(u"Content-type"_s, u"application/json; charset=utf-8"_s);
}

CommandProcessor::~CommandProcessor() = default;

void CommandProcessor::setSettings(AtolOnlineSettings* value)
{
    settings = value;
    companyInfo = {
        {u"email"_s, settings->getCompanyEmail()},
        {u"payment_address"_s, settings->getPaymentAddress()},
        {u"inn"_s, settings->getCompanyInn()},
    };
}

void CommandProcessor::requestToken(bool force)
{
    const QString header = u"token"_s;
    if (!force && headers.contains(header))
        return;
    logger->debug("Получение токена");
    const QJsonObject body{{u"login"_s, settings->getLogin()}, {u"pass"_s, settings->getPassword()}};
    QHash<QString, QString> sent = headers;
    // The transport refuses such a header, so the token would prevent its own renewal.
    if (hasLineBreak(sent.value(header)))
        sent.remove(header);
    restClient->post(address(settings->getUrl() + u"getToken"_s), compactJson(body), sent);
    headers.insert(header, checkResponse().value(header).toString());
}

void CommandProcessor::setClientPhone(const QString& phone)
{
    clientInfo = {{u"phone"_s, phone}};
}

void CommandProcessor::setClientEmail(const QString& email)
{
    clientInfo = {{u"email"_s, email}};
}

QString CommandProcessor::sell(const QList<FrPosition>& positions, const QMap<int, double>& payments,
    const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites)
{
    lastDocumentFiscalInfo.clear();
    clearLastResponse();
    const QJsonObject body{
        {u"receipt"_s, createReceipt(positions, payments, requisites)},
        {u"external_id"_s, internalDocumentId},
        {u"timestamp"_s, serviceTime(QDateTime::currentDateTime())},
    };
    restClient->post(
        address(settings->getUrl() + settings->getGroupCode() + u"/sell"_s), compactJson(body), headers);
    return checkResponse().value(u"uuid"_s).toString();
}

int CommandProcessor::getDocumentStatus(const QString& uuid)
{
    logger->info("Получение статуса документа по uuid: %1", uuid);
    const QUrl url = address(settings->getUrl() + settings->getGroupCode() + u"/report/"_s + uuid);
    restClient->get(url, QJsonDocument(), headers);
    try {
        const QVariantMap response = checkResponse();
        lastDocumentFiscalInfo = response.value(u"payload"_s).toMap();
        return getStatusFromString(response.value(u"status"_s).toString());
    } catch (const DocumentInProgress& e) {
        logger->debug(e.tr().ru());
        return Wait;
    }
}

QVariantMap CommandProcessor::checkResponse()
{
    const QVariantMap response = restClient->getResponseData().toMap();
    if (response.isEmpty())
        throw FrWorkWithServiceException(u"Нет связи с ФР"_s);
    // Stored before the error check, so that the host can read error replies too.
    lastResponse = QJsonObject::fromVariantMap(response);
    processResponseErrors(response);
    const QVariantMap payload = response.value(u"payload"_s).toMap();
    if (const auto url = payload.find(u"ofd_receipt_url"_s); url != payload.end())
        logger->info("Просмотр чека на сайте ОФД: %1", url->toString());
    return response;
}

QJsonObject CommandProcessor::createReceipt(const QList<FrPosition>& positions,
    const QMap<int, double>& payments, const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites) const
{
    // Inserted into a copy: a JSON object keeps the bytes of every text that was ever inserted, so one that
    // lives as long as the register would grow with each receipt.
    QJsonObject company = companyInfo;
    const int taxSystem = requisites.value(tags::appliedTaxSystem).getSourceData().toInt();
    if (taxSystem != 0)
        company.insert("sno"_L1, getSnoName(hw::fr::common::TaxSystemType(taxSystem)));
    return {
        {u"items"_s, createItems(positions)},
        {u"payments"_s, createPayments(payments)},
        {u"total"_s, getTotal(payments)},
        {u"company"_s, company},
        {u"client"_s, clientInfo},
    };
}

int CommandProcessor::getStatusFromString(const QString& status)
{
    if (status == "wait"_L1)
        return Wait;
    if (status == "done"_L1)
        return Done;
    if (status == "fail"_L1)
        return Fail;
    return Unknown;
}

void CommandProcessor::setInternalDocumentId(const QString& id)
{
    logger->info("Установка идентификатора документа %1", id);
    internalDocumentId = id;
}

void CommandProcessor::processResponseErrors(const QVariantMap& response) const
{
    const QVariantMap error = response.value(u"error"_s).toMap();
    if (error.isEmpty())
        return;
    const QVariant code = error.value(u"code"_s, -1);
    const QString text = error.value(u"text"_s).toString();
    logger->error("Ответ от сервера содержит ошибку. Код %1, идентификатор %2 (%3)", code,
        error.value(u"error_id"_s).toString(), text);
    ExceptionFactory::throwException(codeOf(code), text);
}

} // namespace atolonline
