#pragma once

#include "hostcli/commandline.h"
#include "till/config/registerconfig.h"
#include "till/device/fiscalregister.h"
#include "till/wire/installedtransport.h"
#include "till/wire/observingtransport.h"

namespace frhost {

/// The configuration that the command line names, its warnings shown; an empty one when it names none. Throws
/// Failure.
[[nodiscard]] RegisterConfig configOf(const CommandLine& line);

/// The plugin that the command line names, or the only one there is. Throws Failure.
[[nodiscard]] PluginFile pluginOf(const CommandLine& line);

/// Writes the settings and creates the driver. Throws Failure.
void setUp(FiscalRegister& fiscalRegister, const RegisterConfig& config);

/// A register that is configured, observed on the wire and connected to the service.
class Session
{
public:
    /// Throws Failure: usage for whatever is wrong with configuration or credentials, unknown when the
    /// service cannot be asked.
    explicit Session(const CommandLine& line);

    /// Asks the service for a token. Throws Failure as the constructor does.
    void connect();

    /// The service's address as it may be shown: without a password.
    [[nodiscard]] QString serviceAddress() const;
    [[nodiscard]] FiscalRegister& fiscalRegister() { return loaded; }
    [[nodiscard]] ObservingTransport& transport() { return observer; }

private:
    RegisterConfig config;
    // The transport outlives the register, whose driver uses it.
    ObservingTransport observer;
    InstalledTransport installed;
    FiscalRegister loaded;
};

} // namespace frhost
