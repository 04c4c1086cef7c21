#pragma once

#include "atolonline/commandprocessor.h"
#include "host/transport/transportoptions.h"
#include "plugin/atolonlinesettings.h"
#include "tests/support/wire/authority.h"

#include <QString>
#include <QStringList>

#include <ostream>

// What the client sends in every test, easy to find in a log or on the wire.
inline constexpr auto canaryLogin = "canary-login";
inline constexpr auto canaryPassword = "canary\"pass/word";
inline constexpr auto canaryToken = "canary-token-0123456789";
inline constexpr auto canaryContact = "canary@buyer.example";

/// The authority that certifies every TLS server of these tests.
const Authority& authority();

/// While it lives, every new RestClient has these options.
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
    /// The base address ends in "/".
    explicit WireClient(const std::string& baseAddress);

    /// Runs the operation; what the caller sees, in the words of outcomeOf().
    QString run(Operation operation);

    [[nodiscard]] QJsonObject lastResponse() const { return processor.getLastResponse(); }

private:
    AtolOnlineSettings settings;
    atolonline::CommandProcessor processor;
};

/// The request line's verb and path of the operation.
QString requestOf(Operation operation);
/// The lines that the transport has logged at info level and above.
QStringList transportLines(const QStringList& lines);
