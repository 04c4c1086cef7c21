#include "hostcli/commands/session.h"

#include "host/abstractfrdriver.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/console.h"
#include "till/config/registersetup.h"
#include "till/sale/attempt.h"
#include "till/text.h"

#include <QCoreApplication>
#include <QUrl>

#include <algorithm>
#include <array>

namespace frhost {

namespace {

// Codes with which the service answers credentials that it does not take.
constexpr std::array credentialErrors{12, 13, 14, 20, 21};

bool isAboutCredentials(const ServiceAnswer& answer)
{
    return answer.errorCode && std::find(credentialErrors.begin(), credentialErrors.end(),
                                   *answer.errorCode) != credentialErrors.end();
}

RegisterConfig connectedConfig(const CommandLine& line)
{
    RegisterConfig config = configOf(line);
    requireConnection(config);
    TransportOptions::setDefaults(config.transport);
    return config;
}

} // namespace

RegisterConfig configOf(const CommandLine& line)
{
    if (line.config.isEmpty())
        return {};
    const RegisterConfig config = readRegisterConfig(line.config);
    for (const QString& warning : config.warnings)
        Console::instance().line(warning);
    return config;
}

PluginFile pluginOf(const CommandLine& line)
{
    return choosePlugin(line.plugin, pluginFolders(QCoreApplication::applicationDirPath()));
}

void setUp(FiscalRegister& fiscalRegister, const RegisterConfig& config)
{
    configure(fiscalRegister.device(), config);
    fiscalRegister.init();
    const auto& options = config.driverOptions;
    for (auto option = options.begin(); option != options.end(); ++option) {
        if (fiscalRegister.driver().checkOption(option.key()) != option.value())
            throw Failure(ExitCode::Usage,
                Text::tr("%1: the driver refused option 0x%2")
                    .arg(config.file, QString::number(static_cast<quint64>(option.key()), 16)));
    }
}

Session::Session(const CommandLine& line)
    : config(connectedConfig(line))
    , installed(observer)
    , loaded(pluginOf(line))
{
    setUp(loaded, config);
}

QString Session::serviceAddress() const
{
    return QUrl(loaded.device().property("url").toString()).toDisplayString();
}

void Session::connect()
{
    const auto error = attempt([&] { loaded.driver().connect(); });
    if (!error)
        return;
    const QString url = serviceAddress();
    if (isAboutCredentials(observer.seen().token))
        throw Failure(ExitCode::Usage,
            Text::tr(
                "The service at %1 does not take the login: %2. Correct login and password in %3. Nothing "
                "was sent.")
                .arg(url, error->message, config.file));
    throw Failure(ExitCode::Unknown,
        Text::tr("No connection with the service at %1: %2. Nothing was sent.").arg(url, error->message));
}

} // namespace frhost
