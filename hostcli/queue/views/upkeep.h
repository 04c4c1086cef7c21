#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"

namespace frhost {

/// Status 1 where something is wrong with the store.
[[nodiscard]] ExitCode queueAudit(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queueExport(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode queuePrune(const CommandLine& line, Output& output);

} // namespace frhost
