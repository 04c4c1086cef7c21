#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"
#include "queue/store/store.h"

#include <QJsonObject>

#include <vector>

namespace frhost {

// What looks into the queue and changes nothing.

[[nodiscard]] ExitCode queueResults(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queueWait(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queueList(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queueShow(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queueStats(const CommandLine& line, Output& output);

/// Says how many unfinished receipts of other registers the store has; returns them by address.
QJsonObject tellOfOthers(queue::Store& store);

/// Writes a line for each receipt.
void writeEntries(const std::vector<queue::Entry>& entries, bool isJson, Output& output);

} // namespace frhost
