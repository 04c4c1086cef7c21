#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"

namespace frhost {

/// Carries out a subcommand of `queue`; throws Failure or till::Error for what keeps it from its work.
[[nodiscard]] ExitCode queueCommand(const CommandLine& line, Output& output);

} // namespace frhost
