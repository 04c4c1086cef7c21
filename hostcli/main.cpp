#include "hostcli/commandline.h"
#include "hostcli/commands/commands.h"
#include "hostcli/failure.h"
#include "hostcli/log/logging.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/interruption.h"
#include "hostcli/terminal/signalwatch.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

// A standard descriptor that was closed would be given to the next file or socket, which would then get our
// output. What takes its place can neither be read nor written.
void occupyStandardDescriptors()
{
    for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1)
            std::ignore = open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

// The memory holds password and token: neither a core dump nor other processes of the same user may have it.
void keepMemoryPrivate()
{
    prctl(PR_SET_DUMPABLE, 0);
}

ExitCode show(const CommandLineText& answer)
{
    Output output;
    if (answer.isError)
        return reportUsageError(answer, output);
    return output.write(answer.text.toUtf8()) ? ExitCode::Success : ExitCode::LocalFailure;
}

ExitCode start(int argc, char** argv)
{
    const auto parsed = parseCommandLine(argc, argv);
    if (const auto* answer = std::get_if<CommandLineText>(&parsed))
        return show(*answer);
    const auto& line = std::get<CommandLine>(parsed);
    if (line.quiet)
        Console::instance().beQuiet();
    Output output;
    try {
        startLogging(line.logLevel, line.logFile);
        return run(line, output);
    } catch (const Failure& failure) {
        return reportFailure(line, output, failure);
    } catch (const till::Error& error) {
        return reportFailure(line, output, error);
    }
}

} // namespace

int main(int argc, char** argv)
{
    keepMemoryPrivate();
    occupyStandardDescriptors();
    // A reader that goes away, or a file that may not grow, must not end the program in the middle of a
    // receipt.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    ignoreLocaleWarning();
    const SignalWatch watch(&interrupt);
    const QCoreApplication application(argc, argv);
    QTranslator translator;
    if (translator.load(QLocale(), u"frhost"_s, u"_"_s, u":/frhost"_s))
        QCoreApplication::installTranslator(&translator);
    const ExitCode code = start(argc, argv);
    ignoreInterruptions();
    return static_cast<int>(code);
}
