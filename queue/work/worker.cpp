#include "queue/work/worker.h"

#include "queue/store/storeerror.h"
#include "till/text.h"

#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::Literals::StringLiterals;
using till::Text;

namespace queue {

namespace {

// Between two attempts to use a store that is away, and between two signs of life meanwhile.
constexpr int signsInARest = 5;
constexpr std::chrono::milliseconds betweenSigns{200};

} // namespace

Worker::Worker(Surroundings usedSurroundings, int usedLanes, QString usedName, PauseLengths usedPauses)
    : surroundings(std::move(usedSurroundings))
    , lanes(usedLanes)
    , name(std::move(usedName))
    , pauses(usedPauses)
{
}

bool Worker::run()
{
    for (;;) {
        try {
            return work();
        } catch (const StoreError& error) {
            if (!error.isPassing() || surroundings.untilEmpty)
                throw;
            say(error.message());
        }
        if (!rest())
            return true;
    }
}

bool Worker::work()
{
    if (isKnown && !till::isOnServer(surroundings.store) && !QFileInfo::exists(surroundings.store))
        throw StoreError(surroundings.store, Text::tr("the file is not there any more"));
    Crew ours(surroundings, lanes, pauses);
    {
        const std::scoped_lock lock(guard);
        if (stopped)
            return true;
        crew = &ours;
    }
    const auto afterwards = qScopeGuard([this] {
        const std::scoped_lock lock(guard);
        crew = nullptr;
    });
    return ours.run(name, [this] {
        isKnown = true;
        say({});
    });
}

void Worker::stop()
{
    {
        const std::scoped_lock lock(guard);
        stopped = true;
        if (crew)
            crew->stop();
    }
    changed.notify_all();
}

// Says a trouble once, and that it is over.
void Worker::say(const QString& text)
{
    if (text == trouble)
        return;
    trouble = text;
    surroundings.showTrouble(trouble);
    surroundings.say(trouble.isEmpty() ? Text::tr("%1: the queue can be used again.").arg(surroundings.store)
                                       : trouble + u' ' + Text::tr("The worker waits for it."));
}

bool Worker::rest()
{
    std::unique_lock lock(guard);
    for (int i = 0; i < signsInARest && !stopped; ++i) {
        surroundings.showLife();
        changed.wait_for(lock, betweenSigns, [this] { return stopped; });
    }
    return !stopped;
}

} // namespace queue
