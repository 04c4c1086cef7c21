#pragma once

#include <QString>
#include <QStringList>

namespace frhost {

enum class QueueAction
{
    Add,
    Work,
    Results,
    Wait,
    List,
    Show,
    Retry,
    Hold,
    Release,
    Cancel,
    Stats,
    Audit,
    Export,
    Prune,
};

/// What the user asks of `queue`.
struct QueueLine
{
    QueueAction action = QueueAction::List;
    QStringList ids;
    /// Of `retry`; empty to keep the id.
    QString newId;
    /// Of `list`; empty for all.
    QString state;
    /// Of `results`: the cursor of the last result that was read.
    qint64 after = 0;
    bool follow = false;
    bool untilEmpty = false;
    bool openMetrics = false;
    /// Of `audit`.
    bool ask = false;
    /// Of `prune`.
    int days = 0;
};

} // namespace frhost
