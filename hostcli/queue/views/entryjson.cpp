#include "hostcli/queue/views/entryjson.h"

#include "hostcli/terminal/printable.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::Literals::StringLiterals;
using queue::Entry;

namespace frhost {

namespace {

// With the offset from UTC: another machine, or the same one in another season, may read it.
QString timeText(qint64 milliseconds)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(milliseconds);
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QJsonObject toJson(const queue::Event& event)
{
    QJsonObject json{{u"at"_s, timeText(event.at)}, {u"event"_s, event.name}};
    if (event.attempt > 0)
        json.insert("attempt"_L1, event.attempt);
    if (!event.worker.isEmpty())
        json.insert("worker"_L1, event.worker);
    if (!event.detail.isEmpty())
        json.insert("detail"_L1, QJsonDocument::fromJson(event.detail).object());
    return json;
}

} // namespace

QByteArray jsonLine(const QJsonObject& json)
{
    return printableJson(QJsonDocument(json).toJson(QJsonDocument::Compact)) + '\n';
}

QJsonObject toJson(const Entry& entry)
{
    QJsonObject json{{u"id"_s, entry.id}, {u"state"_s, nameOf(entry.state)}, {u"attempts"_s, entry.attempt},
        {u"file"_s, entry.file}, {u"line"_s, entry.line}, {u"added"_s, timeText(entry.added)},
        {u"changed"_s, timeText(entry.changed)}};
    if (entry.isHeld)
        json.insert("held"_L1, true);
    if (!entry.uuid.isEmpty())
        json.insert("uuid"_L1, entry.uuid);
    return json;
}

QJsonObject wholeJson(const Entry& entry, const std::vector<queue::Event>& history)
{
    QJsonObject json = toJson(entry);
    QJsonArray events;
    for (const queue::Event& event : history)
        events.append(toJson(event));
    json.insert("receipt"_L1, QJsonDocument::fromJson(entry.text).object());
    json.insert("events"_L1, events);
    return json;
}

} // namespace frhost
