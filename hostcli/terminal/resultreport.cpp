#include "hostcli/terminal/resultreport.h"

#include "hostcli/terminal/printable.h"
#include "hostcli/terminal/texttable.h"
#include "till/text.h"
#include "till/wire/fiscalpayload.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

void put(QJsonObject& object, const char* key, const QString& text)
{
    if (!text.isEmpty())
        object.insert(QLatin1StringView(key), text);
}

QJsonObject fiscalJson(const FiscalInfo& info)
{
    QJsonObject json;
    if (info.dateTime.isValid())
        put(json, "dateTime", info.dateTime.toString(Qt::ISODate));
    put(json, "fnNumber", info.fnNumber);
    put(json, "registrationNumber", info.registrationNumber);
    put(json, "shiftNumber", info.shiftNumber);
    json.insert("fiscalDocumentNumber"_L1, info.fiscalDocumentNumber);
    put(json, "taxSystem", info.taxSystem);
    put(json, "fiscalSign", info.fiscalSign);
    json.insert("total"_L1, info.total);
    return json;
}

QJsonObject errorJson(const ErrorInfo& error)
{
    QJsonObject json;
    put(json, "type", error.type);
    if (error.code)
        json.insert("code"_L1, static_cast<int>(*error.code));
    json.insert("message"_L1, error.message);
    put(json, "detail", error.detail);
    put(json, "errorId", error.errorId);
    return json;
}

QByteArray lineOf(const QJsonObject& json)
{
    return printableJson(QJsonDocument(json).toJson(QJsonDocument::Compact)) + '\n';
}

QString outcomeText(const ReceiptResult& result)
{
    if (!result.outcome)
        return Text::tr("accepted");
    switch (*result.outcome) {
    case Outcome::Registered:
        return result.recovered ? Text::tr("registered by an earlier attempt") : Text::tr("registered");
    case Outcome::Incomplete:
        return Text::tr("registered, evidence incomplete");
    case Outcome::Refused:
        return Text::tr("refused");
    case Outcome::Unknown:
        break;
    }
    return Text::tr("unknown");
}

// Green is done, red is not, yellow wants another look.
QString coloured(const QString& text, std::optional<Outcome> outcome)
{
    const Outcome shown = outcome.value_or(Outcome::Registered);
    const int colour = shown == Outcome::Registered ? 32 : shown == Outcome::Refused ? 31 : 33;
    return u"\x1b[%1m"_s.arg(colour) + text + u"\x1b[0m"_s;
}

QString comparisonName(Comparison comparison)
{
    switch (comparison) {
    case Comparison::Total:
        return u"total"_s;
    case Comparison::Content:
        return u"content"_s;
    case Comparison::None:
        break;
    }
    return {};
}

QString witnessName(Witness witness)
{
    switch (witness) {
    case Witness::Driver:
        return u"driver"_s;
    case Witness::Journal:
        return u"journal"_s;
    case Witness::Service:
        break;
    }
    return {};
}

QString witnessText(Witness witness)
{
    switch (witness) {
    case Witness::Driver:
        return Text::tr("the driver's word");
    case Witness::Journal:
        return Text::tr("the driver's word, recorded in the journal");
    case Witness::Service:
        break;
    }
    return {};
}

QString errorText(const ErrorInfo& error)
{
    return error.code
               ? Text::tr("%1 (code %2)").arg(error.message, QString::number(static_cast<int>(*error.code)))
               : error.message;
}

} // namespace

QString outcomeName(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Registered:
        return u"registered"_s;
    case Outcome::Incomplete:
        return u"incomplete"_s;
    case Outcome::Refused:
        return u"refused"_s;
    case Outcome::Unknown:
        break;
    }
    return u"unknown"_s;
}

QString nameOf(const ReceiptResult& result)
{
    if (!result.id.isEmpty())
        return result.id;
    return result.uuid.isEmpty() ? u"%1:%2"_s.arg(result.file, QString::number(result.line)) : result.uuid;
}

QByteArray toJsonLine(const ReceiptResult& result)
{
    QJsonObject json;
    put(json, "file", result.file);
    json.insert("line"_L1, result.line);
    put(json, "id", result.id);
    if (result.outcome)
        put(json, "outcome", outcomeName(*result.outcome));
    put(json, "uuid", result.uuid);
    if (result.recovered)
        json.insert("recovered"_L1, true);
    put(json, "compared", comparisonName(result.compared));
    put(json, "evidence", witnessName(result.witness));
    if (result.fiscal) {
        json.insert("fiscal"_L1, fiscalJson(*result.fiscal));
        put(json, "qr", qrText(*result.fiscal));
    }
    put(json, "receiptUrl", result.receiptUrl);
    if (result.error)
        json.insert("error"_L1, errorJson(*result.error));
    json.insert("sent"_L1, result.sent);
    put(json, "next", nextStepName(result.next));
    return lineOf(json);
}

QByteArray toJsonLine(const RunFailure& failure)
{
    return lineOf({{u"failure"_s, errorJson(failure.error)}, {u"sent"_s, failure.sent},
        {u"next"_s, nextStepName(failure.next)}});
}

QString toText(const ReceiptResult& result, bool inColour)
{
    QList<QStringList> rows;
    const auto row = [&](const QString& label, const QString& value) {
        if (!value.isEmpty())
            rows << QStringList{label, value};
    };
    if (result.error)
        row(Text::tr("Cause"), errorText(*result.error));
    if (result.error && result.error->detail != result.error->message)
        row(Text::tr("The service says"), result.error->detail);
    if (result.error)
        row(Text::tr("Identifier of the error"), result.error->errorId);
    if (result.compared == Comparison::Total)
        row(Text::tr("Compared"), Text::tr("only the total; the journal does not know the earlier receipt"));
    row(Text::tr("Evidence"), witnessText(result.witness));
    row(Text::tr("Service's identifier"), result.uuid);
    if (result.fiscal) {
        const FiscalInfo& info = *result.fiscal;
        row(Text::tr("Date and time"), info.dateTime.toString(u"dd.MM.yyyy hh:mm:ss"_s));
        row(Text::tr("Total"), QString::number(info.total, 'f', 2));
        row(Text::tr("Taxation system"), info.taxSystem);
        row(Text::tr("Register"), info.registrationNumber);
        row(Text::tr("Fiscal storage"), info.fnNumber);
        row(Text::tr("Shift"), info.shiftNumber);
        row(Text::tr("Fiscal document"), QString::number(info.fiscalDocumentNumber));
        row(Text::tr("Fiscal sign"), info.fiscalSign);
        row(Text::tr("Text of the QR code"), qrText(info));
    }
    row(Text::tr("Receipt"), result.receiptUrl);
    const QString outcome = inColour ? coloured(outcomeText(result), result.outcome) : outcomeText(result);
    return u"%1: %2\n"_s.arg(printable(nameOf(result)), outcome) + textTable(rows, 2);
}

} // namespace frhost
