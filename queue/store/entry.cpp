#include "queue/store/entry.h"

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

} // namespace queue
