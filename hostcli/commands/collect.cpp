#include "hostcli/commands/commands.h"
#include "hostcli/commands/setup.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/resultreport.h"
#include "hostcli/terminal/runreport.h"
#include "till/sale/failure.h"
#include "till/sale/registrar.h"
#include "till/sale/session.h"
#include "till/text.h"

#include <algorithm>
#include <tuple>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

// One run of `collect`.
class Collection
{
public:
    Collection(const CommandLine& commandLine, Output& usedOutput)
        : line(commandLine)
        , output(usedOutput)
    {
    }

    ExitCode run(Session& session)
    {
        int at = 0;
        if (isConnected(session)) {
            Registrar registrar(session.fiscalRegister(), session.transport());
            for (bool goesOn = true; goesOn && at < count() && output.error().isEmpty(); ++at) {
                ask(registrar, at);
                // The others would have to wait as long for no answer.
                goesOn = session.transport().seen().lastAnswered != false;
            }
        }
        for (; at < count() && output.error().isEmpty(); ++at)
            skip(at);
        summarize();
        return status;
    }

private:
    [[nodiscard]] int count() const { return static_cast<int>(line.uuids.size()); }

    // In JSON, a service that cannot be used is reported for each document, too.
    bool isConnected(Session& session)
    {
        try {
            session.connect();
            return true;
        } catch (const Error& error) {
            if (!line.json)
                throw;
            const RunFailure failure = failureOf(error, false);
            status = exitCodeOf(error.problem());
            nextOfRest = failure.next;
            Console::instance().line(error.message(), Urgency::Error);
            output.write(toJsonLine(failure));
        }
        return false;
    }

    void ask(Registrar& registrar, int at)
    {
        ReceiptResult result = [&] {
            const ShownStatus shown(line.uuids.at(at));
            return registrar.collect(line.uuids.at(at));
        }();
        result.line = at + 1;
        tally.add(result.outcome);
        status = std::max(status, exitCodeOf(result.outcome));
        report(result, line.json, output);
    }

    void skip(int at)
    {
        ReceiptResult result;
        result.uuid = line.uuids.at(at);
        result.line = at + 1;
        result.outcome = Outcome::Unknown;
        result.next = nextOfRest;
        result.error = ErrorInfo{{}, std::nullopt, Text::tr("Not asked about: the run ended before it")};
        report(result, line.json, output);
    }

    void summarize()
    {
        if (line.json)
            output.write(toJsonLine(tally, u"registered"_s, count(), status));
        reportTotals(tally, true, count());
        if (tally.done() < count())
            Console::instance().line(Text::tr("Not asked about: %1.").arg(count() - tally.done()));
    }

    const CommandLine& line;
    Output& output;
    Tally tally;
    ExitCode status = ExitCode::Success;
    NextStep nextOfRest = NextStep::Rerun;
};

} // namespace

ExitCode collect(const CommandLine& line, Output& output)
{
    for (const QString& uuid : line.uuids)
        requireUuid(uuid);
    Session session(serviceConfigOf(line), pluginOf(line));
    std::ignore = session.fiscalRegister().service();
    return Collection(line, output).run(session);
}

} // namespace frhost
