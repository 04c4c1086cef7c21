#include "till/wire/fiscalpayload.h"

#include "host/records/taxsystem.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

FiscalPayload readPayload(const QVariantMap& payload, std::optional<int> taxSystem)
{
    FiscalInfo info;
    info.dateTime =
        QDateTime::fromString(payload.value(u"receipt_datetime"_s).toString(), u"dd.MM.yyyy hh:mm:ss"_s);
    info.fnNumber = payload.value(u"fn_number"_s).toString();
    info.registrationNumber = payload.value(u"ecr_registration_number"_s).toString();
    info.shiftNumber = payload.value(u"shift_number"_s).toString();
    info.fiscalDocumentNumber = payload.value(u"fiscal_document_number"_s).toInt();
    info.fiscalSign = payload.value(u"fiscal_document_attribute"_s).toString();
    info.total = payload.value(u"total"_s).toDouble();
    if (taxSystem)
        info.taxSystem =
            hw::fr::common::TaxSystem::getDescription(static_cast<hw::fr::common::TaxSystemType>(*taxSystem));
    return {info, payload.value(u"ofd_receipt_url"_s).toString()};
}

std::optional<double> totalIn(const QVariantMap& payload)
{
    const QVariant total = payload.value(u"total"_s);
    const bool isNumber = total.typeId() == QMetaType::Double || total.typeId() == QMetaType::LongLong;
    return isNumber ? std::optional(total.toDouble()) : std::nullopt;
}

QString qrText(const FiscalInfo& info)
{
    if (!info.dateTime.isValid() || info.fnNumber.isEmpty() || info.fiscalSign.isEmpty())
        return {};
    return u"t=%1&s=%2&fn=%3&i=%4&fp=%5&n=1"_s.arg(info.dateTime.toString(u"yyyyMMdd'T'hhmm"_s),
        QString::number(info.total, 'f', 2), info.fnNumber, QString::number(info.fiscalDocumentNumber),
        info.fiscalSign);
}

} // namespace till
