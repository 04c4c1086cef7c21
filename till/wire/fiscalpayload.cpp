#include "till/wire/fiscalpayload.h"

#include "host/records/taxsystem.h"
#include "till/wire/exactvalue.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// The fiscal data format gives numbers of documents and signs 32 bits; the host's record holds an int.
constexpr qint64 greatestDocument = std::numeric_limits<int>::max();
constexpr qint64 greatestSign = std::numeric_limits<quint32>::max();
constexpr qsizetype registrationDigits = 16;

std::optional<qint64> documentIn(const QVariant& value)
{
    return exactInteger(value, 1, greatestDocument);
}

std::optional<qint64> signIn(const QVariant& value)
{
    return exactInteger(value, 1, greatestSign);
}

QString storageIn(const QVariant& value)
{
    const QString text = exactText(value);
    const bool isNumber =
        text.size() == registrationDigits &&
        std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber ? text : QString();
}

// As a text, empty for none: that is how the host's record holds most numbers.
QString textOf(std::optional<qint64> number)
{
    return number ? QString::number(*number) : QString();
}

struct Proof
{
    const char* key;
    bool (*isGiven)(const QVariant& value);
};

constexpr Proof proofs[] = {
    {"total", [](const QVariant& value) { return exactNumber(value).has_value(); }},
    {"fiscal_document_number", [](const QVariant& value) { return documentIn(value).has_value(); }},
    {"fn_number", [](const QVariant& value) { return !storageIn(value).isEmpty(); }},
    {"fiscal_document_attribute", [](const QVariant& value) { return signIn(value).has_value(); }},
};

} // namespace

FiscalPayload readPayload(const QVariantMap& payload, std::optional<int> taxSystem)
{
    FiscalInfo info;
    info.dateTime =
        QDateTime::fromString(exactText(payload.value(u"receipt_datetime"_s)), u"dd.MM.yyyy hh:mm:ss"_s);
    info.fnNumber = storageIn(payload.value(u"fn_number"_s));
    info.registrationNumber = storageIn(payload.value(u"ecr_registration_number"_s));
    info.shiftNumber = textOf(exactInteger(payload.value(u"shift_number"_s), 0, greatestDocument));
    info.fiscalDocumentNumber =
        static_cast<int>(documentIn(payload.value(u"fiscal_document_number"_s)).value_or(0));
    info.fiscalSign = textOf(signIn(payload.value(u"fiscal_document_attribute"_s)));
    info.total = totalIn(payload).value_or(qQNaN());
    if (taxSystem)
        info.taxSystem =
            hw::fr::common::TaxSystem::getDescription(static_cast<hw::fr::common::TaxSystemType>(*taxSystem));
    return {info, exactText(payload.value(u"ofd_receipt_url"_s))};
}

QStringList missingProof(const QVariantMap& payload)
{
    QStringList missing;
    for (const Proof& proof : proofs) {
        const QString key = QString::fromLatin1(proof.key);
        if (!proof.isGiven(payload.value(key)))
            missing << key;
    }
    return missing;
}

std::optional<double> totalIn(const QVariantMap& payload)
{
    return exactNumber(payload.value(u"total"_s));
}

QString qrText(const FiscalInfo& info)
{
    const bool isWhole = info.dateTime.isValid() && !info.fnNumber.isEmpty() && !info.fiscalSign.isEmpty() &&
                         info.fiscalDocumentNumber > 0 && std::isfinite(info.total);
    if (!isWhole)
        return {};
    return u"t=%1&s=%2&fn=%3&i=%4&fp=%5&n=1"_s.arg(info.dateTime.toString(u"yyyyMMdd'T'hhmm"_s),
        QString::number(info.total, 'f', 2), info.fnNumber, QString::number(info.fiscalDocumentNumber),
        info.fiscalSign);
}

} // namespace till
