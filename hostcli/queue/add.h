#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/queue/open.h"
#include "hostcli/terminal/output.h"
#include "queue/store/entry.h"

#include <memory>

namespace till {
struct QueuedReceipt;
}

namespace frhost {

/// Has the driver compose receipts, which it may refuse, without sending anything.
class Composer
{
public:
    Composer(const CommandLine& line, const QueuePlace& place);
    ~Composer();
    Q_DISABLE_COPY_MOVE(Composer)

    /// What is to be stored of the receipt. Throws till::Error (Receipt) where the driver refuses it.
    [[nodiscard]] queue::NewEntry entryFor(const till::QueuedReceipt& queued);

private:
    class Register;

    QString address;
    std::unique_ptr<Register> used;
};

[[nodiscard]] ExitCode queueAdd(const CommandLine& line, Output& output);

} // namespace frhost
