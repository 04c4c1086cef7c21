#pragma once

#include "atolonline/commandprocessor.h"
#include "host/transport/transportoptions.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/authority.h"

#include <QString>
#include <QStringList>

#include <ostream>

// What leaves the till in every test of the transport, to be found in a log or on a wire.
inline constexpr auto canaryLogin = "canary-login";
inline constexpr auto canaryPassword = "canary\"pass/word";
inline constexpr auto canaryToken = "canary-token-0123456789";
inline constexpr auto canaryContact = "canary@buyer.example";

/// The authority that every TLS server of these tests belongs to.
const Authority& authority();

/// Options for every RestClient created while it lives.
class Defaults
{
public:
    explicit Defaults(const hostruntime::TransportOptions& options)
    {
        hostruntime::TransportOptions::setDefaults(options);
    }
    ~Defaults() { hostruntime::TransportOptions::setDefaults(hostruntime::TransportOptions()); }
    Q_DISABLE_COPY_MOVE(Defaults)
};

/// Options that trust authority().
hostruntime::TransportOptions trusting();

/// The requests that a register makes of the service.
enum class Operation
{
    Token,
    Sell,
    Report
};
void PrintTo(Operation operation, std::ostream* out);

/// A register's client of the service over a real transport.
class WireClient
{
public:
    /// A base address ends in "/".
    explicit WireClient(const std::string& baseAddress);

    /// Runs the operation and tells what the caller gets: "ok", or the exception's class and Russian text.
    QString run(Operation operation);

    [[nodiscard]] QJsonObject lastResponse() const { return processor.getLastResponse(); }

private:
    AtolOnlineSettings settings;
    atolonline::CommandProcessor processor;
};

/// The request line's verb and path of the operation.
QString requestOf(Operation operation);
/// The lines of the log that the transport has written at info level and above.
QStringList transportLines(const QStringList& lines);
