#include "till/wire/fiscalpayload.h"

#include "host/records/taxsystem.h"

#include <QVariantMap>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

QVariantMap payloadOf(const QJsonObject& answer)
{
    return answer.value(u"payload"_s).toObject().toVariantMap();
}

} // namespace

FiscalInfo fiscalInfo(const QJsonObject& answer, int taxSystem)
{
    const QVariantMap payload = payloadOf(answer);
    const auto value = [&](const char* key) { return payload.value(QString::fromLatin1(key)); };
    FiscalInfo info;
    info.dateTime = QDateTime::fromString(value("receipt_datetime").toString(), u"dd.MM.yyyy hh:mm:ss"_s);
    info.fnNumber = value("fn_number").toString();
    info.registrationNumber = value("ecr_registration_number").toString();
    info.shiftNumber = value("shift_number").toString();
    info.fiscalDocumentNumber = value("fiscal_document_number").toInt();
    info.fiscalSign = value("fiscal_document_attribute").toString();
    info.total = value("total").toDouble();
    if (taxSystem != 0)
        info.taxSystem =
            hw::fr::common::TaxSystem::getDescription(static_cast<hw::fr::common::TaxSystemType>(taxSystem));
    return info;
}

QString receiptUrl(const QJsonObject& answer)
{
    return payloadOf(answer).value(u"ofd_receipt_url"_s).toString();
}

QString qrText(const FiscalInfo& info)
{
    if (!info.dateTime.isValid() || info.fnNumber.isEmpty() || info.fiscalSign.isEmpty())
        return {};
    return u"t=%1&s=%2&fn=%3&i=%4&fp=%5&n=1"_s.arg(info.dateTime.toString(u"yyyyMMdd'T'hhmm"_s),
        QString::number(info.total, 'f', 2), info.fnNumber, QString::number(info.fiscalDocumentNumber),
        info.fiscalSign);
}

} // namespace frhost
