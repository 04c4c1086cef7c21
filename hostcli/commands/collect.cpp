#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/runreport.h"
#include "till/sale/registrar.h"
#include "till/sale/session.h"

#include <algorithm>
#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

ExitCode collect(const CommandLine& line, Output& output)
{
    for (const QString& uuid : line.uuids)
        requireUuid(uuid);
    Session session(serviceConfigOf(line), pluginOf(line));
    std::ignore = session.fiscalRegister().service();
    session.connect();
    Registrar registrar(session.fiscalRegister(), session.transport());
    Tally tally;
    ExitCode status = ExitCode::Success;
    for (qsizetype i = 0; i < line.uuids.size() && output.error().isEmpty(); ++i) {
        ReceiptResult result = [&] {
            const ShownStatus shown(line.uuids.at(i));
            return registrar.collect(line.uuids.at(i));
        }();
        result.line = static_cast<int>(i) + 1;
        tally.add(result.outcome);
        status = std::max(status, exitCodeOf(result.outcome));
        report(result, line.json, output);
        // The others would have to wait as long for no answer.
        if (session.transport().seen().lastAnswered == false)
            break;
    }
    if (line.json)
        output.write(toJsonLine(tally, u"registered"_s, static_cast<int>(line.uuids.size()), status));
    return status;
}

} // namespace frhost
