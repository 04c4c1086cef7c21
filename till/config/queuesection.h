#pragma once

#include "till/config/inifile.h"
#include "till/config/registerconfig.h"

namespace till {

/// Reads one line of the section [queue]. Throws Error that names file and line.
void readQueueEntry(RegisterConfig& config, const IniEntry& entry);

/// The keys of the section [queue].
[[nodiscard]] QStringList queueKeys();

} // namespace till
