#include "till/diagnosis/configurationcheck.h"

#include "host/log/exchangesecrets.h"
#include "till/diagnosis/taxpayernumber.h"
#include "till/text.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QString valueOf(const RegisterConfig& config, const QString& name)
{
    const auto found = std::find_if(config.settings.begin(), config.settings.end(),
        [&](const Setting& setting) { return setting.name == name; });
    return found == config.settings.end() ? QString() : found->value;
}

QString lacks(const RegisterConfig& config, const QString& name)
{
    return Text::tr("%1: section [register] lacks \"%2\"").arg(config.file, name);
}

bool isLoopback(const QString& host)
{
    return host == "localhost"_L1 || host == "::1"_L1 || host.startsWith("127."_L1);
}

Finding addressFinding(const RegisterConfig& config)
{
    const QString given = valueOf(config, u"url"_s);
    const QString subject = Text::tr("Address");
    const QString shown = hostruntime::secrets::withoutPassword(given);
    const QUrl url(given);
    if (given.isEmpty())
        return {Grade::Fault, subject, lacks(config, u"url"_s)};
    if (url.scheme() != "https"_L1 && url.scheme() != "http"_L1)
        return {Grade::Fault, subject,
            Text::tr("%1 does not begin with https://. Correct url in %2.").arg(shown, config.file)};
    if (url.host().isEmpty())
        return {Grade::Fault, subject,
            Text::tr("%1 names no server. Correct url in %2.").arg(shown, config.file)};
    if (url.scheme() == "http"_L1 && !isLoopback(url.host()))
        return {Grade::Warning, subject,
            Text::tr("%1 is not encrypted: everybody on the way can read login and password. Write https:// "
                     "in %2.")
                .arg(shown, config.file)};
    return {Grade::Good, subject, shown};
}

QList<Finding> accountFindings(const RegisterConfig& config)
{
    QList<Finding> findings;
    for (const QString& name : {u"login"_s, u"password"_s, u"groupCode"_s}) {
        if (valueOf(config, name).isEmpty())
            findings << Finding{Grade::Fault, Text::tr("Account"), lacks(config, name)};
    }
    return findings;
}

Finding numberFinding(const RegisterConfig& config)
{
    const QString number = valueOf(config, u"inn"_s);
    const QString subject = Text::tr("Taxpayer number");
    switch (judgeTaxpayerNumber(number)) {
    case TaxpayerNumber::Good:
        return {Grade::Good, subject, number};
    case TaxpayerNumber::WrongLength:
        return {Grade::Warning, subject,
            number.isEmpty()
                ? Text::tr("%1 has no inn. Add the company's 10 or 12 digits.").arg(config.file)
                : Text::tr("%1 does not have 10 or 12 digits. Correct inn in %2.").arg(number, config.file)};
    case TaxpayerNumber::WrongCheckDigit:
        break;
    }
    return {Grade::Warning, subject,
        Text::tr("%1 cannot be right: its check digit does not match. Correct inn in %2.")
            .arg(number, config.file)};
}

QList<Finding> companyFindings(const RegisterConfig& config)
{
    QList<Finding> findings{numberFinding(config)};
    for (const QString& name : {u"email"_s, u"paymentAddress"_s}) {
        if (valueOf(config, name).isEmpty())
            findings << Finding{Grade::Warning, Text::tr("Company"),
                Text::tr("%1 has no %2, without which the service refuses receipts.").arg(config.file, name)};
    }
    return findings;
}

} // namespace

QList<Finding> checkConfiguration(const RegisterConfig& config)
{
    QList<Finding> findings{addressFinding(config)};
    findings << accountFindings(config) << companyFindings(config);
    return findings;
}

} // namespace till
