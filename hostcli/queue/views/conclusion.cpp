#include "hostcli/queue/views/conclusion.h"

#include "hostcli/queue/views/entryjson.h"
#include "hostcli/terminal/resultreport.h"
#include "queue/store/views.h"
#include "till/text.h"

#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using namespace till;
using queue::Entry;
using queue::State;

namespace frhost {

namespace {

FiscalInfo fiscalIn(const QJsonObject& json)
{
    FiscalInfo info;
    info.dateTime = QDateTime::fromString(json.value("dateTime"_L1).toString(), Qt::ISODate);
    info.fnNumber = json.value("fnNumber"_L1).toString();
    info.registrationNumber = json.value("registrationNumber"_L1).toString();
    info.shiftNumber = json.value("shiftNumber"_L1).toString();
    info.fiscalDocumentNumber = json.value("fiscalDocumentNumber"_L1).toInt();
    info.taxSystem = json.value("taxSystem"_L1).toString();
    info.fiscalSign = json.value("fiscalSign"_L1).toString();
    info.total = json.value("total"_L1).toDouble();
    return info;
}

ErrorInfo errorIn(const QJsonObject& json)
{
    ErrorInfo error{json.value("type"_L1).toString(), std::nullopt, json.value("message"_L1).toString(),
        json.value("detail"_L1).toString(), json.value("errorId"_L1).toString()};
    if (json.contains("code"_L1))
        error.code = ServiceCode(json.value("code"_L1).toInt());
    return error;
}

std::optional<Outcome> outcomeIn(const QJsonObject& line)
{
    for (const Outcome outcome :
        {Outcome::Registered, Outcome::Incomplete, Outcome::Refused, Outcome::Unknown}) {
        if (line.value("outcome"_L1) == outcomeName(outcome))
            return outcome;
    }
    return std::nullopt;
}

NextStep nextIn(const QJsonObject& line)
{
    for (const NextStep step : {NextStep::Rerun, NextStep::Correct, NextStep::NewId, NextStep::Account}) {
        if (line.value("next"_L1) == nextStepName(step))
            return step;
    }
    return NextStep::None;
}

Comparison comparisonIn(const QJsonObject& line)
{
    const QString name = line.value("compared"_L1).toString();
    return name == "content"_L1 ? Comparison::Content
           : name == "total"_L1 ? Comparison::Total
                                : Comparison::None;
}

// Under which id it was sent again; empty where it was not.
QString replacementOf(queue::Store& store, const Entry& entry)
{
    for (const queue::Event& event : historyOf(store, entry)) {
        if (event.name == "replaced"_L1)
            return QJsonDocument::fromJson(event.detail).object().value("by"_L1).toString();
    }
    return {};
}

QueueStep stepFor(State state, NextStep next)
{
    switch (state) {
    case State::Registered:
        return QueueStep::None;
    case State::Failed:
    case State::Cancelled:
        return QueueStep::RetryNewId;
    case State::Refused:
        return next == NextStep::NewId ? QueueStep::RetryNewId : QueueStep::Retry;
    case State::Incomplete:
    case State::Queued:
    case State::Sent:
    case State::Unknown:
        break;
    }
    return QueueStep::Release;
}

QString adviceFor(const Entry& entry, QueueStep next)
{
    switch (entry.state) {
    case State::Registered:
        return {};
    case State::Cancelled:
        return Text::tr("If it is to be sold after all: frhost queue retry %1 --new-id NEW").arg(entry.id);
    case State::Failed:
        return Text::tr("Nothing was registered, and this id is used up. Send it under a new one: frhost "
                        "queue retry %1 --new-id NEW")
            .arg(entry.id);
    case State::Refused:
        if (next == QueueStep::RetryNewId)
            return Text::tr(
                "This sale is NOT registered. Send it under an id of its own: frhost queue retry %1 "
                "--new-id NEW")
                .arg(entry.id);
        return Text::tr("Nothing was registered. Correct the cause, then: frhost queue retry %1. If the "
                        "receipt itself is wrong, hand the correct one over under another id.")
            .arg(entry.id);
    case State::Incomplete:
        return Text::tr("Do NOT sell it under a new id. Have the service asked again: frhost queue release "
                        "%1")
            .arg(entry.id);
    case State::Queued:
    case State::Sent:
    case State::Unknown:
        break;
    }
    return Text::tr("Look at what happened: frhost queue show %1. Then: frhost queue release %1")
        .arg(entry.id);
}

Outcome outcomeOf(const Entry& entry)
{
    switch (entry.state) {
    case State::Registered:
        return Outcome::Registered;
    case State::Incomplete:
        return Outcome::Incomplete;
    case State::Failed:
    case State::Refused:
    case State::Cancelled:
        return Outcome::Refused;
    case State::Queued:
    case State::Sent:
    case State::Unknown:
        break;
    }
    return Outcome::Unknown;
}

// Of one without a result: nobody works on it.
ReceiptResult withoutResult(const Entry& entry)
{
    ReceiptResult result;
    result.file = entry.file;
    result.line = entry.line;
    result.id = entry.id;
    result.uuid = entry.uuid;
    result.sent = entry.maybeSent;
    const bool isCancelled = entry.state == State::Cancelled;
    result.error = ErrorInfo{
        {}, std::nullopt, isCancelled ? Text::tr("cancelled") : Text::tr("held until a person releases it")};
    return result;
}

} // namespace

ReceiptResult resultIn(const QJsonObject& line)
{
    ReceiptResult result;
    result.file = line.value("file"_L1).toString();
    result.line = line.value("line"_L1).toInt();
    result.id = line.value("id"_L1).toString();
    result.outcome = outcomeIn(line);
    result.uuid = line.value("uuid"_L1).toString();
    result.recovered = line.value("recovered"_L1).toBool();
    result.compared = comparisonIn(line);
    if (line.contains("fiscal"_L1))
        result.fiscal = fiscalIn(line.value("fiscal"_L1).toObject());
    result.receiptUrl = line.value("receiptUrl"_L1).toString();
    if (line.contains("error"_L1))
        result.error = errorIn(line.value("error"_L1).toObject());
    result.sent = line.value("sent"_L1).toBool();
    result.next = nextIn(line);
    return result;
}

QString queueStepName(QueueStep step)
{
    switch (step) {
    case QueueStep::Retry:
        return u"retry"_s;
    case QueueStep::RetryNewId:
        return u"retry-new-id"_s;
    case QueueStep::Release:
        return u"release"_s;
    case QueueStep::None:
        break;
    }
    return u"none"_s;
}

Conclusion conclusionOf(queue::Store& store, const Entry& entry)
{
    const bool hasResult = isFinished(entry.state) && entry.state != State::Cancelled;
    Conclusion conclusion{
        hasResult ? resultIn(QJsonDocument::fromJson(resultOf(store, entry)).object()) : withoutResult(entry),
        QueueStep::None};
    ReceiptResult& result = conclusion.result;
    result.outcome = outcomeOf(entry);
    if (const QString other = replacementOf(store, entry); !other.isEmpty()) {
        result.advice = Text::tr("It was sent again under another id: frhost queue wait %1").arg(other);
        return conclusion;
    }
    conclusion.next = stepFor(entry.state, result.next);
    result.advice = adviceFor(entry, conclusion.next);
    return conclusion;
}

QJsonObject inQueue(QJsonObject line)
{
    const State state = outcomeIn(line) == Outcome::Registered ? State::Registered : State::Refused;
    line.insert("next"_L1, queueStepName(stepFor(state, nextIn(line))));
    return line;
}

QByteArray toJsonLine(const Conclusion& conclusion)
{
    QJsonObject json = QJsonDocument::fromJson(toJsonLine(conclusion.result)).object();
    json.insert("next"_L1, queueStepName(conclusion.next));
    return jsonLine(json);
}

} // namespace frhost
