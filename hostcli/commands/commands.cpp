#include "hostcli/commands/commands.h"

#include "hostcli/queue/queue.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "hostcli/terminal/resultreport.h"
#include "hostcli/terminal/runreport.h"
#include "till/text.h"

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

ExitCode dispatch(const CommandLine& line, Output& output)
{
    switch (line.command) {
    case Command::Describe:
        leaveInterruptionsToTheSystem();
        return describe(line, output);
    case Command::Check: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return check(line, output);
    }
    case Command::Doctor: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return doctor(line, output);
    }
    case Command::Bundle: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return bundle(line, output);
    }
    case Command::Sell:
    case Command::Send: {
        const OnInterruption interruption(&sayNothingSentAndEnd);
        return submit(line, output);
    }
    case Command::Info: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return info(line, output);
    }
    case Command::Collect: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return collect(line, output);
    }
    case Command::Explain:
        leaveInterruptionsToTheSystem();
        return explain(line, output);
    case Command::Queue:
        return queueCommand(line, output);
    case Command::Compose:
        break;
    }
    leaveInterruptionsToTheSystem();
    return compose(line, output);
}

NextStep nextStepAfter(ExitCode code)
{
    switch (code) {
    case ExitCode::LocalFailure:
        return NextStep::Account;
    case ExitCode::WrongReceipt:
    case ExitCode::Refused:
        return NextStep::Correct;
    default:
        return NextStep::Rerun;
    }
}

void writeFailure(const CommandLine& line, Output& output, const RunFailure& failure, ExitCode code)
{
    if (!line.json)
        return;
    output.write(toJsonLine(failure));
    if (line.command == Command::Sell || line.command == Command::Collect)
        output.write(toJsonLine(Tally(), u"registered"_s, static_cast<int>(line.uuids.size()), code));
    if (line.command == Command::Send)
        output.write(toJsonLine(Tally(), u"accepted"_s, 0, code));
}

} // namespace

ExitCode reportUsageError(const CommandLineText& answer, Output& output)
{
    const QString text = answer.text.trimmed();
    Console::instance().lines(text, Urgency::Error);
    const ErrorInfo error{{}, std::nullopt, text.section(u'\n', 0, 0)};
    if (answer.json)
        output.write(toJsonLine(RunFailure{error, false, NextStep::Account}));
    return ExitCode::LocalFailure;
}

ExitCode reportFailure(const CommandLine& line, Output& output, const Failure& failure)
{
    Console::instance().line(failure.message(), Urgency::Error);
    writeFailure(line, output, {{{}, std::nullopt, failure.message()}, false, nextStepAfter(failure.code())},
        failure.code());
    return failure.code();
}

ExitCode reportFailure(const CommandLine& line, Output& output, const Error& error)
{
    // One line for each wrong receipt; any other message may quote the service.
    if (error.problem() == Problem::Receipt)
        Console::instance().lines(error.message(), Urgency::Error);
    else
        Console::instance().line(error.message(), Urgency::Error);
    const ExitCode code = exitCodeOf(error.problem());
    writeFailure(line, output, failureOf(error, false), code);
    return code;
}

ExitCode run(const CommandLine& line, Output& output)
{
    const ExitCode code = dispatch(line, output);
    if (output.error().isEmpty())
        return code;
    Console::instance().line(Text::tr("Standard output: %1").arg(output.error()));
    return code == ExitCode::Success ? ExitCode::LocalFailure : code;
}

} // namespace frhost
