#include "till/journal/receiptstate.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

struct Row
{
    ReceiptState state;
    const char* name;
    // Of two states, the one with the higher rank is known for better reasons.
    int rank;
};

constexpr std::array rows{
    Row{ReceiptState::Sent, "sent", 0},
    Row{ReceiptState::Unknown, "unknown", 0},
    Row{ReceiptState::Refused, "refused", 0},
    Row{ReceiptState::Accepted, "accepted", 1},
    Row{ReceiptState::Failed, "failed", 2},
    Row{ReceiptState::Incomplete, "incomplete", 3},
    Row{ReceiptState::Registered, "registered", 4},
};

const Row& rowOf(ReceiptState state)
{
    return *std::ranges::find(rows, state, &Row::state);
}

} // namespace

QString nameOf(ReceiptState state)
{
    return QString::fromLatin1(rowOf(state).name);
}

ReceiptState receiptStateOf(const QString& name)
{
    const auto* found =
        std::ranges::find_if(rows, [&](const Row& row) { return name == QLatin1StringView(row.name); });
    return found == rows.end() ? ReceiptState::Unknown : found->state;
}

bool isProven(ReceiptState state)
{
    return rowOf(state).rank > 0;
}

bool givesWay(ReceiptState recorded, ReceiptState to)
{
    return rowOf(to).rank >= rowOf(recorded).rank;
}

} // namespace till
