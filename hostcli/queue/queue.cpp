#include "hostcli/queue/queue.h"

#include "hostcli/queue/add.h"
#include "hostcli/queue/decide.h"
#include "hostcli/queue/views/upkeep.h"
#include "hostcli/queue/views/view.h"
#include "hostcli/queue/work.h"
#include "hostcli/terminal/interruption.h"

namespace frhost {

ExitCode queueCommand(const CommandLine& line, Output& output)
{
    // All but `work` may end at any moment: the store holds a step as a whole, or not at all.
    if (line.queue.action != QueueAction::Work)
        leaveInterruptionsToTheSystem();
    switch (line.queue.action) {
    case QueueAction::Add:
        return queueAdd(line, output);
    case QueueAction::Work:
        return queueWork(line);
    case QueueAction::Results:
        return queueResults(line, output);
    case QueueAction::Wait:
        return queueWait(line, output);
    case QueueAction::List:
        return queueList(line, output);
    case QueueAction::Show:
        return queueShow(line, output);
    case QueueAction::Stats:
        return queueStats(line, output);
    case QueueAction::Audit:
        return queueAudit(line, output);
    case QueueAction::Export:
        return queueExport(line, output);
    case QueueAction::Prune:
        return queuePrune(line, output);
    case QueueAction::Retry:
    case QueueAction::Hold:
    case QueueAction::Release:
    case QueueAction::Cancel:
        break;
    }
    return queueDecide(line, output);
}

} // namespace frhost
