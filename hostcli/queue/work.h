#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"

namespace frhost {

[[nodiscard]] ExitCode queueWork(const CommandLine& line);

} // namespace frhost
