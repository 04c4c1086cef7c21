#include "till/sale/session.h"

#include "host/abstractfrdriver.h"
#include "till/config/registersetup.h"
#include "till/sale/attempt.h"
#include "till/sale/obstacle.h"
#include "till/sale/outcome.h"
#include "till/text.h"

#include <QUrl>

#include <tuple>

namespace till {

namespace {

// Done before the transport is created, which copies the default options.
RegisterConfig applied(const RegisterConfig& config)
{
    hostruntime::TransportOptions::setDefaults(config.transport);
    return config;
}

} // namespace

Session::Session(const RegisterConfig& usedConfig, const PluginFile& plugin)
    : config(applied(usedConfig))
    , installed(observer)
    , loaded(plugin)
{
    requireConnection(config, settableNames(loaded.device()));
    setUp(loaded, config);
}

Session::~Session()
{
    std::ignore = attempt([&] { loaded.driver().portClose(); });
}

QString Session::serviceAddress() const
{
    return QUrl(loaded.device().property("url").toString()).toDisplayString();
}

void Session::connect()
{
    if (!loaded.hasService()) {
        connectWithoutService();
        return;
    }
    const auto error = attempt([&] {
        loaded.driver().portOpen();
        loaded.driver().connect();
    });
    const ServiceAnswer& answer = observer.seen().token;
    const bool lacksToken = answer.arrived && !answer.holdsToken;
    if (!error && !lacksToken)
        return;
    ErrorInfo info = error.value_or(ErrorInfo());
    info.code = answer.errorCode;
    addWords(info, answer);
    preferWordsOfService(info);
    if (error && answer.errorCode && meaningOf(*answer.errorCode).concernsAccount)
        failOfAccount(info);
    failOfConnection(info, lacksToken && !(error && answer.errorCode));
}

void Session::failOfAccount(ErrorInfo info) const
{
    const QString text =
        info.code == ServiceCode::BlockedUser
            ? Text::tr("The service at %1 has blocked this account: %2. Only the service can "
                       "unblock it. No receipt was sent.")
                  .arg(serviceAddress(), info.message)
            : Text::tr("The service at %1 does not accept the login: %2. Correct login and "
                       "password in %3. No receipt was sent.")
                  .arg(serviceAddress(), info.message, config.file);
    info.message = text;
    throw ConnectError(Problem::Setup, info, NextStep::Account);
}

void Session::failOfConnection(ErrorInfo info, bool lacksToken) const
{
    NextStep next = NextStep::Rerun;
    const QString later = Text::tr("Try again later; if it stays like this, ask the service.");
    if (lacksToken) {
        info.message = Text::tr("The answer of the service at %1 holds no token. %2 No receipt was sent.")
                           .arg(serviceAddress(), later);
    } else if (observer.failure().isEmpty()) {
        const Cause* cause = info.code ? causeOf(*info.code) : nullptr;
        next = cause && cause->next == NextStep::Account ? NextStep::Account : NextStep::Rerun;
        info.message =
            Text::tr("The service at %1 issues no token: %2. %3 No receipt was sent.")
                .arg(serviceAddress(), info.message, cause ? textsOf(*cause).administrator : later);
    } else {
        const Obstacle obstacle = obstacleIn(observer.failure());
        next = obstacle.next;
        info.message = Text::tr("Cannot reach %1: %2. %3 No receipt was sent.")
                           .arg(serviceAddress(), obstacle.cause, obstacle.advice);
    }
    throw ConnectError(Problem::Connection, info, next);
}

void Session::connectWithoutService()
{
    const auto error = attempt([&] {
        loaded.driver().portOpen();
        loaded.driver().connect();
        loaded.driver().init();
    });
    if (error)
        throw Error(Problem::Connection,
            Text::tr("No connection to the register: %1. Nothing was sent.").arg(error->message));
}

} // namespace till
