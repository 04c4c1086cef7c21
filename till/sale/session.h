#pragma once

#include "till/config/registerconfig.h"
#include "till/device/loadedregister.h"
#include "till/error.h"
#include "till/sale/result.h"
#include "till/wire/installedtransport.h"
#include "till/wire/observingtransport.h"

namespace till {

/// The service cannot be used; says what the service said.
class ConnectError : public Error
{
public:
    ConnectError(Problem problem, const ErrorInfo& what, NextStep nextStep)
        : Error(problem, what.message)
        , cause(what)
        , step(nextStep)
    {
    }

    [[nodiscard]] const ErrorInfo& info() const { return cause; }
    [[nodiscard]] NextStep next() const { return step; }

private:
    ErrorInfo cause;
    NextStep step;
};

/// A register that is configured, observed on the wire and, after connect(), ready for receipts.
class Session
{
public:
    /// Loads and configures the register. The configuration's transport options become those of the process.
    /// Throws Error for whatever is wrong with configuration or plugin.
    Session(const RegisterConfig& usedConfig, const PluginFile& plugin);
    /// Closes the register's port.
    ~Session();
    Q_DISABLE_COPY_MOVE(Session)

    /// Opens the register's port, where it has one, and asks the service for a token; blocks for one
    /// exchange. Without a service, has the register answer and initialises it. Throws ConnectError: Setup
    /// when the service refuses the credentials, Connection when service or register cannot be reached.
    void connect();

    /// The service's address as it may be shown: without a password.
    [[nodiscard]] QString serviceAddress() const;
    [[nodiscard]] LoadedRegister& fiscalRegister() { return loaded; }
    [[nodiscard]] ObservingTransport& transport() { return observer; }

private:
    void connectWithoutService();
    [[noreturn]] void failOfAccount(ErrorInfo info) const;
    [[noreturn]] void failOfConnection(ErrorInfo info, bool lacksToken) const;

    RegisterConfig config;
    // The transport outlives the register, whose driver uses it.
    ObservingTransport observer;
    InstalledTransport installed;
    LoadedRegister loaded;
};

} // namespace till
