#include "queue/store/entry.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <array>

namespace queue {

namespace {

struct Row
{
    State state;
    const char* name;
    bool isFinished;
};

constexpr std::array rows{
    Row{State::Queued, "queued", false},
    Row{State::Sent, "sent", false},
    Row{State::Unknown, "unknown", false},
    Row{State::Incomplete, "incomplete", false},
    Row{State::Registered, "registered", true},
    Row{State::Failed, "failed", true},
    Row{State::Refused, "refused", true},
    Row{State::Cancelled, "cancelled", true},
};

const Row& rowOf(State state)
{
    return *std::ranges::find(rows, state, &Row::state);
}

} // namespace

QString nameOf(State state)
{
    return QString::fromLatin1(rowOf(state).name);
}

std::optional<State> stateOf(const QString& name)
{
    const auto* found =
        std::ranges::find_if(rows, [&](const Row& row) { return name == QLatin1StringView(row.name); });
    return found == rows.end() ? std::nullopt : std::optional(found->state);
}

QStringList stateNames()
{
    QStringList names;
    for (const Row& row : rows)
        names << QString::fromLatin1(row.name);
    return names;
}

bool isFinished(State state)
{
    return rowOf(state).isFinished;
}

Entry entryIn(const QSqlQuery& row)
{
    Entry entry;
    entry.number = row.value(0).toLongLong();
    entry.id = row.value(1).toString();
    entry.state = stateOf(row.value(2).toString()).value_or(State::Unknown);
    entry.isHeld = row.value(3).toBool();
    entry.attempt = row.value(4).toInt();
    entry.maybeSent = row.value(5).toBool();
    entry.fruitless = row.value(6).toInt();
    entry.file = row.value(7).toString();
    entry.line = row.value(8).toInt();
    entry.text = row.value(9).toByteArray();
    entry.digest = row.value(10).toByteArray();
    entry.added = row.value(11).toLongLong();
    entry.changed = row.value(12).toLongLong();
    entry.uuid = row.value(13).toString();
    return entry;
}

} // namespace queue
