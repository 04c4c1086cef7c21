#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/diagnosis/examination.h"
#include "hostcli/diagnosis/report.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/printable.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

QString addressIn(const RegisterConfig& config)
{
    const auto url = std::find_if(config.settings.begin(), config.settings.end(),
        [](const Setting& setting) { return setting.name == u"url"_s; });
    return url == config.settings.end() ? QString() : QUrl(url->value).toDisplayString();
}

QByteArray jsonReport(const Examination& examination, const RegisterConfig& config)
{
    QJsonObject object{
        {u"connected"_s, examination.isConnected}, {u"findings"_s, jsonOf(worstFirst(examination.findings))}};
    if (!examination.device.isEmpty())
        object.insert(u"device"_s, examination.device);
    else if (const QString address = addressIn(config); !address.isEmpty())
        object.insert(u"url"_s, address);
    return printableJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

} // namespace

ExitCode check(const CommandLine& line, Output& output)
{
    const RegisterConfig config = serviceConfigOf(line);
    const Examination examination = examined(line, config);
    output.write(line.json ? jsonReport(examination, config) : textOf(worstFirst(examination.findings)));
    if (line.json) {
        for (const Finding& finding : examination.findings) {
            if (finding.grade == Grade::Fault)
                Console::instance().line(finding.text, Urgency::Error);
        }
    }
    return exitCodeOf(examination.findings);
}

ExitCode doctor(const CommandLine& line, Output& output)
{
    const QList<Finding> findings = worstFirst(examinedWithMachine(line).findings);
    const QJsonObject object{{u"findings"_s, jsonOf(findings)}};
    output.write(line.json ? printableJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n'
                           : textOf(findings));
    return exitCodeOf(findings);
}

} // namespace frhost
