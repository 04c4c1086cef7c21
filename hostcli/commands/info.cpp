#include "host/log/secrets.h"
#include "host/vposfrdriver.h"
#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/printable.h"
#include "till/sale/attempt.h"
#include "till/sale/obstacle.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <QJsonDocument>

#include <tuple>

using namespace till;
namespace secrets = hostruntime::secrets;

namespace frhost {

namespace {

QString whyNobodyAnswered(const QString& failure)
{
    const Obstacle obstacle = obstacleIn(failure);
    return Text::tr("No answer from the service: %1. %2").arg(obstacle.cause, obstacle.advice);
}

} // namespace

ExitCode info(const CommandLine& line, Output& output)
{
    requireUuid(line.uuid);
    Session session(serviceConfigOf(line), pluginOf(line));
    VposFrDriver& service = session.fiscalRegister().service();
    session.connect();
    session.transport().startReceipt();
    auto error = attempt([&] { std::ignore = service.getDocumentInfo(line.uuid); });
    const WireRecord& seen = session.transport().seen();
    if (seen.tokensRejected)
        throw Failure(ExitCode::Unknown, Text::tr("The service does not accept the tokens that it issues"));
    const ServiceAnswer& answer = seen.status;
    if (!answer.arrived)
        throw Failure(ExitCode::Unknown, whyNobodyAnswered(session.transport().failure()));
    const QJsonValue masked =
        secrets::masked(QJsonValue(service.getLastResponse()), secrets::Audience::Developer);
    const QByteArray shown =
        QJsonDocument(masked.toObject()).toJson(line.json ? QJsonDocument::Compact : QJsonDocument::Indented);
    output.write(printableJson(shown.trimmed()) + '\n');
    if (answer.saysFailed())
        Console::instance().line(
            Text::tr("This is a single answer. Before you sell under a new id, run the same file again: sell "
                     "believes a failure only when four answers agree."));
    if (!error)
        return answer.saysFailed() ? ExitCode::Refused : ExitCode::Success;
    addWords(*error, answer);
    preferWordsOfService(*error);
    Console::instance().line(error->message);
    return ExitCode::Refused;
}

} // namespace frhost
