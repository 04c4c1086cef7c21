#pragma once

#include "hostcli/commandline.h"
#include "till/config/registerconfig.h"

namespace frhost {

/// Where the queue of a configuration is, and whose receipts in it are meant.
struct QueuePlace
{
    till::RegisterConfig config;
    QString file;
    /// Address of the register.
    QString address;
};

/// Reads the configuration and, where the queue's file is the user's own, creates its folder. Throws Failure
/// or till::Error.
[[nodiscard]] QueuePlace placeOf(const CommandLine& line);

} // namespace frhost
