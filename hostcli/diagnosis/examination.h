#pragma once

#include "hostcli/commandline.h"
#include "till/config/registerconfig.h"
#include "till/diagnosis/finding.h"

#include <QByteArray>

namespace frhost {

/// What was found, and the exchanges with the service that it took.
struct Examination
{
    QList<till::Finding> findings;
    QByteArray exchanges;
    /// The name of a register that is not a web service and has answered; empty otherwise.
    QString device;
    /// Whether the service has accepted the login, or the register has answered.
    bool isConnected = false;
};

/// Proves the configuration, as far as it can be proved without registering anything. The service is asked
/// only if nothing is wrong so far. A register that is not a web service only has to answer.
[[nodiscard]] Examination examined(const CommandLine& line, const till::RegisterConfig& config);

/// The same for whatever configuration there is, with what the machine contributes.
[[nodiscard]] Examination examinedWithMachine(const CommandLine& line);

} // namespace frhost
