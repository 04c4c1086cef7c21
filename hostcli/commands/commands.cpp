#include "hostcli/commands/commands.h"

#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "till/text.h"

using till::Text;

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
    case Command::Sell:
    case Command::Send: {
        const OnInterruption interruption(&sayNothingSentAndEnd);
        return submit(line, output);
    }
    case Command::Info: {
        const OnInterruption interruption(&sayInterruptedAndEnd);
        return info(line, output);
    }
    case Command::Explain:
        leaveInterruptionsToTheSystem();
        return explain(line, output);
    case Command::Compose:
        break;
    }
    leaveInterruptionsToTheSystem();
    return compose(line, output);
}

} // namespace

ExitCode run(const CommandLine& line, Output& output)
{
    const ExitCode code = dispatch(line, output);
    if (output.error().isEmpty())
        return code;
    Console::instance().line(Text::tr("Standard output: %1").arg(output.error()));
    return code == ExitCode::Success ? ExitCode::LocalFailure : code;
}

} // namespace frhost
