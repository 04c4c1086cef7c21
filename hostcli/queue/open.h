#pragma once

#include "hostcli/commandline.h"
#include "queue/store/store.h"
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

/// Reads the configuration and, for what may create the queue, creates the folder of its file where that is
/// the user's own. Throws Failure or till::Error.
[[nodiscard]] QueuePlace placeOf(const CommandLine& line);

/// What to tell the user when others than its owner can read the queue's file; empty when they cannot.
[[nodiscard]] QString exposureOf(const QString& file);

/// Opens the queue for whoever looks into it or decides about what is in it, and creates nothing.
[[nodiscard]] queue::Store storeAt(const QueuePlace& place);

} // namespace frhost
