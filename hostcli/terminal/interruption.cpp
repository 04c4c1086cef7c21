#include "hostcli/terminal/interruption.h"

#include "hostcli/terminal/console.h"
#include "till/text.h"

#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>

#include <pthread.h>

using till::Text;

namespace frhost {

namespace {

struct Decision
{
    std::mutex guard;
    std::condition_variable changed;
    // Runs under the guard, so that nothing it uses goes away meanwhile.
    std::function<void(int)> action;
};

Decision& decision()
{
    static Decision instance;
    return instance;
}

void decide(const std::function<void(int)>& action)
{
    Decision& made = decision();
    {
        const std::scoped_lock lock(made.guard);
        made.action = action;
    }
    made.changed.notify_all();
}

void endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    std::raise(signal);
}

[[noreturn]] void sayAndEnd(const QString& text)
{
    Console::instance().dropStatus();
    Console::instance().line(text);
    endInterrupted(ExitCode::Unknown);
}

} // namespace

void interrupt(int signal)
{
    Decision& made = decision();
    std::unique_lock lock(made.guard);
    made.changed.wait(lock, [&] { return made.action != nullptr; });
    made.action(signal);
}

void leaveInterruptionsToTheSystem()
{
    decide(&endBySignal);
}

void ignoreInterruptions()
{
    decide([](int) {});
}

OnInterruption::OnInterruption(const std::function<void()>& action)
{
    decide([action](int) { action(); });
}

OnInterruption::~OnInterruption()
{
    ignoreInterruptions();
}

void endInterrupted(ExitCode status)
{
    std::_Exit(static_cast<int>(status));
}

void sayInterruptedAndEnd()
{
    sayAndEnd(Text::tr("Interrupted."));
}

void sayNothingSentAndEnd()
{
    sayAndEnd(Text::tr("Interrupted. %1").arg(Text::tr("Nothing was sent.")));
}

} // namespace frhost
