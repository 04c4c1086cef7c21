#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/printable.h"
#include "till/config/registersetup.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QByteArray report(bool json, const QString& url)
{
    if (!json)
        return Text::tr("The service at %1 accepts login and password.\n").arg(printable(url)).toUtf8();
    const QJsonObject object{{u"connected"_s, true}, {u"url"_s, url}};
    return printableJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

QByteArray localReport(bool json, const QString& device)
{
    if (!json)
        return Text::tr("The register answers: %1\n").arg(printable(device)).toUtf8();
    const QJsonObject object{{u"connected"_s, true}, {u"device"_s, device}};
    return printableJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

} // namespace

ExitCode check(const CommandLine& line, Output& output)
{
    Session session(serviceConfigOf(line), pluginOf(line));
    if (!session.fiscalRegister().hasService()) {
        session.connect();
        const QString device = classInfo(session.fiscalRegister().device(), u"displayName"_s);
        output.write(localReport(line.json, device));
        return ExitCode::Success;
    }
    const QString url = session.serviceAddress();
    {
        const ShownStatus status(url);
        session.connect();
    }
    output.write(report(line.json, url));
    return ExitCode::Success;
}

} // namespace frhost
