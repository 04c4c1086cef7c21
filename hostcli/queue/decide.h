#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"

namespace frhost {

/// `retry`, `hold`, `release` and `cancel`. Shows the receipt afterwards, as `list` does.
[[nodiscard]] ExitCode queueDecide(const CommandLine& line, Output& output);

} // namespace frhost
