#include "queue/store/decisions.h"

#include "queue/store/intake.h"
#include "queue/store/views.h"
#include "till/error.h"
#include "till/text.h"

#include <QJsonDocument>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

[[noreturn]] void refuse(const QString& id, const QString& why)
{
    throw till::Error(till::Problem::Setup, u"%1: %2"_s.arg(id, why));
}

// One that nobody works on.
Entry unfinished(Store& store, const QString& id)
{
    const Entry entry = store.getToChange(id);
    if (isFinished(entry.state))
        refuse(id, Text::tr("it is finished (%1)").arg(nameOf(entry.state)));
    if (entry.state == State::Sent)
        refuse(id, Text::tr("a worker is sending it; try again when it has finished"));
    return entry;
}

bool isReplaced(Store& store, const Entry& entry)
{
    return store.database()
        .value(
            "SELECT EXISTS (SELECT 1 FROM events WHERE receipt = ? AND event = 'replaced')", {entry.number})
        .toBool();
}

// Also where what reached the service was refused, so that the receipt is as before.
bool hasReachedTheService(Store& store, const Entry& entry)
{
    return std::ranges::any_of(historyOf(store, entry), [](const Event& event) {
        return QJsonDocument::fromJson(event.detail).object().value("sent"_L1).toBool();
    });
}

void put(Store& store, const Entry& entry, State state, bool isHeld, const char* event)
{
    store.database().change("UPDATE receipts SET state = ?, held = ?, due = 0, fruitless = 0,"
                            " changed = @now"
                            " WHERE number = ?",
        {nameOf(state), isHeld, entry.number});
    store.note(entry.number, event, 0, entry.attempt);
}

QByteArray detail(const char* key, const QString& id)
{
    return QJsonDocument(QJsonObject{{QLatin1StringView(key), id}}).toJson(QJsonDocument::Compact);
}

} // namespace

void hold(Store& store, const QString& id)
{
    store.database().transaction([&] {
        const Entry entry = unfinished(store, id);
        put(store, entry, entry.state, true, "held");
    });
}

void release(Store& store, const QString& id)
{
    store.database().transaction([&] {
        const Entry entry = unfinished(store, id);
        if (!entry.isHeld)
            refuse(id, Text::tr("it is not held"));
        put(store, entry, entry.state, false, "released");
    });
}

void cancel(Store& store, const QString& id)
{
    store.database().transaction([&] {
        const Entry entry = unfinished(store, id);
        if (entry.maybeSent || entry.state != State::Queued)
            refuse(id, Text::tr("it may have reached the service and cannot be cancelled any more"));
        if (hasReachedTheService(store, entry))
            refuse(id, Text::tr("it has reached the service and cannot be cancelled any more"));
        put(store, entry, State::Cancelled, false, "cancelled");
    });
}

void retry(Store& store, const QString& id)
{
    store.database().transaction([&] {
        const Entry entry = store.getToChange(id);
        if (entry.state == State::Failed)
            refuse(id, Text::tr("this id is used up: retry it with --new-id"));
        if (isReplaced(store, entry))
            refuse(id, Text::tr("it was sent again under another id"));
        if (entry.state == State::Refused)
            put(store, entry, State::Queued, false, "retried");
        else
            put(store, unfinished(store, id), entry.state, false, "retried");
    });
}

void replace(Store& store, const QString& id, const NewEntry& successor)
{
    storeAll(store, [&](const auto& add) {
        const Entry entry = store.getToChange(id);
        const bool isUnregistered =
            entry.state == State::Failed || entry.state == State::Refused || entry.state == State::Cancelled;
        if (!isUnregistered)
            refuse(id, Text::tr("it is %1 and may be registered; under a new id it could be registered twice")
                           .arg(nameOf(entry.state)));
        if (isReplaced(store, entry))
            refuse(id, Text::tr("it was sent again under another id"));
        if (add(successor) == Added::Known)
            refuse(successor.id, Text::tr("this id is in the queue already"));
        store.note(entry.number, "replaced", 0, entry.attempt, detail("by", successor.id));
        store.note(store.getToChange(successor.id).number, "replaces", 0, 0, detail("id", id));
    });
}

} // namespace queue
