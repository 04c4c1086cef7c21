#include "hostcli/diagnosis/examination.h"

#include "hostcli/commands/setup.h"
#include "hostcli/commands/versions.h"
#include "hostcli/diagnosis/report.h"
#include "hostcli/terminal/console.h"
#include "till/config/registersetup.h"
#include "till/diagnosis/configurationcheck.h"
#include "till/diagnosis/machine.h"
#include "till/diagnosis/servicecheck.h"
#include "till/journal/journalfile.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

Examination askedDevice(Session& session)
{
    session.connect();
    Examination examination;
    examination.isConnected = true;
    examination.device = classInfo(session.fiscalRegister().device(), u"displayName"_s);
    examination.findings << Finding{Grade::Good, Text::tr("Device"), examination.device};
    return examination;
}

void askService(Session& session, Examination& examination)
{
    const ShownStatus status(session.serviceAddress());
    const QList<Finding> findings = checkService(session);
    examination.isConnected = findings.first().grade == Grade::Good;
    examination.exchanges = session.transport().exchanges().lines();
    examination.findings << findings;
}

Finding versionFinding(const CommandLine& line)
{
    try {
        std::ignore = pluginOf(line);
        return {Grade::Note, Text::tr("Program"), versions(line.plugin).split(u'\n').join(u"; "_s)};
    } catch (const Failure& failure) {
        return {Grade::Fault, Text::tr("Plugin"), failure.message()};
    } catch (const Error& error) {
        return {Grade::Fault, Text::tr("Plugin"), error.message()};
    }
}

QStringList writtenFiles(const CommandLine& line)
{
    QStringList files{line.journal.isEmpty() ? defaultJournalFile() : line.journal, line.logFile};
    files.removeAll(QString());
    return files;
}

} // namespace

Examination examined(const CommandLine& line, const RegisterConfig& config)
{
    Examination examination;
    try {
        RegisterConfig observed = config;
        observed.transport.keepCertificate = true;
        Session session(observed, pluginOf(line));
        if (!session.fiscalRegister().hasService())
            return askedDevice(session);
        examination.findings = checkConfiguration(config);
        if (!hasFault(examination.findings))
            askService(session, examination);
    } catch (const Failure& failure) {
        examination.findings << Finding{Grade::Fault, Text::tr("Plugin"), failure.message()};
    } catch (const Error& error) {
        examination.findings << Finding{Grade::Fault, Text::tr("Device"), error.message(), error.problem()};
    }
    return examination;
}

Examination examinedWithMachine(const CommandLine& line)
{
    Examination examination;
    RegisterConfig config;
    try {
        const QString file = configFileOf(line, configFolders());
        if (file.isEmpty())
            examination.findings << Finding{Grade::Fault, Text::tr("Configuration"),
                Text::tr("There is none. Name one with --config FILE.")};
        else
            config = readRegisterConfig(file);
    } catch (const Error& error) {
        examination.findings << Finding{
            Grade::Fault, Text::tr("Configuration"), error.message(), error.problem()};
    }
    if (examination.findings.isEmpty()) {
        examination = examined(line, config);
        examination.findings << Finding{Grade::Note, Text::tr("Configuration"), config.file};
    }
    examination.findings << versionFinding(line) << lookAtMachine(config, writtenFiles(line));
    return examination;
}

} // namespace frhost
