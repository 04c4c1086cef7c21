#include "host/transport/idlehandles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using hostruntime::CurlHandle;
using hostruntime::IdleHandles;

using Place = IdleHandles::Place;

constexpr auto never = 1h;
const QString tasks = u"/proc/self/task"_s;

std::unique_ptr<CurlHandle> newHandle()
{
    auto handle = std::make_unique<CurlHandle>();
    handle->multi.reset(curl_multi_init());
    return handle;
}

QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot);
}

qsizetype openFiles()
{
    return entriesOf(u"/proc/self/fd"_s).size();
}

qsizetype threads()
{
    return entriesOf(tasks).size();
}

bool becomesTrue(const std::function<bool()>& condition, std::chrono::milliseconds patience = 5s)
{
    QElapsedTimer late;
    late.start();
    while (!condition() && late.elapsed() < patience.count())
        std::this_thread::sleep_for(1ms);
    return condition();
}

class IdleHandlesTest : public testing::Test
{
protected:
    // The first thread of a program may bring one of the sanitizer's, which stays.
    static void SetUpTestSuite()
    {
        QString entry;
        std::thread([&] { entry = tasks + u"/%1"_s.arg(gettid()); }).join();
        ASSERT_TRUE(becomesTrue([&] { return !QFile::exists(entry); }));
    }
    // A thread that has been joined may still be listed for a moment.
    void TearDown() override
    {
        EXPECT_TRUE(becomesTrue([this] { return threads() == threadsBefore; }));
    }

    // Of the thread that has been started since; until it waits, it is still in the hands of the C library.
    [[nodiscard]] QByteArray statusWhenItWaits() const
    {
        QStringList started = entriesOf(tasks);
        started.removeIf([this](const QString& thread) { return tasksBefore.contains(thread); });
        EXPECT_EQ(started.size(), 1);
        QByteArray status;
        EXPECT_TRUE(becomesTrue([&] {
            QFile file(tasks + u'/' + started.value(0) + "/status"_L1);
            status = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return status.contains("State:\tS");
        }));
        return status;
    }

    const QStringList tasksBefore = entriesOf(tasks);
    const qsizetype threadsBefore = tasksBefore.size();
};

TEST_F(IdleHandlesTest, ReturnsTheHandleThatWasKeptAndOnlyOnce)
{
    IdleHandles idle(never);
    Place first;
    Place second;
    EXPECT_EQ(idle.take(first), nullptr);
    auto handle = newHandle();
    const CurlHandle* const kept = handle.get();
    idle.keep(first, std::move(handle));
    idle.keep(second, newHandle());
    handle = idle.take(first);
    EXPECT_EQ(handle.get(), kept);
    EXPECT_EQ(idle.take(first), nullptr);
    EXPECT_NE(idle.take(second), nullptr);
}

TEST_F(IdleHandlesTest, DestroysTheHandlesThatAreIdleForTooLongAndThenEndsItsThread)
{
    const qsizetype filesBefore = openFiles();
    IdleHandles idle(10ms);
    std::vector<Place> places(20);
    // Twice, because the thread starts again.
    for (int i = 0; i < 2; ++i) {
        for (Place& place : places)
            idle.keep(place, newHandle());
        EXPECT_TRUE(becomesTrue([&] { return openFiles() == filesBefore; }));
        EXPECT_TRUE(becomesTrue([&] { return threads() == threadsBefore; }));
        for (Place& place : places)
            EXPECT_EQ(idle.take(place), nullptr);
    }
}

TEST_F(IdleHandlesTest, DestroysTheHandleThatHasBeenIdleForLongestWhenThereAreMany)
{
    IdleHandles idle(never);
    std::vector<Place> places(IdleHandles::most + 1);
    for (Place& place : places)
        idle.keep(place, std::make_unique<CurlHandle>());
    EXPECT_EQ(idle.take(places.front()), nullptr);
    for (std::size_t i = 1; i < places.size(); ++i)
        EXPECT_NE(idle.take(places[i]), nullptr) << i;
}

TEST_F(IdleHandlesTest, MeasuresTheTimeSinceTheLastUse)
{
    constexpr auto limit = 200ms;
    IdleHandles idle(limit);
    Place used;
    idle.keep(used, newHandle());
    for (int i = 0; i < 30; ++i) {
        QElapsedTimer sinceUse;
        sinceUse.start();
        std::this_thread::sleep_for(10ms);
        auto handle = idle.take(used);
        ASSERT_TRUE(handle || sinceUse.elapsed() >= limit.count()) << i;
        idle.keep(used, handle ? std::move(handle) : newHandle());
    }
    std::ignore = idle.take(used);
}

TEST_F(IdleHandlesTest, LetsManyThreadsUseTheirHandlesMeanwhile)
{
    IdleHandles idle(1ms);
    // Counts the first use of each place, too.
    std::atomic<int> destroyed = 0;
    {
        std::vector<std::jthread> users(4);
        for (std::jthread& user : users) {
            user = std::jthread([&] {
                std::vector<Place> places(50);
                QElapsedTimer time;
                time.start();
                while (destroyed < 400 && time.elapsed() < 5000) {
                    for (Place& place : places) {
                        auto handle = idle.take(place);
                        if (!handle) {
                            handle = std::make_unique<CurlHandle>();
                            ++destroyed;
                        }
                        handle->errorText[0] = 'x';
                        idle.keep(place, std::move(handle));
                    }
                    std::this_thread::sleep_for(1ms);
                }
                for (Place& place : places)
                    std::ignore = idle.take(place);
            });
        }
    }
    EXPECT_GE(destroyed, 400);
}

// A sanitizer sees it.
TEST_F(IdleHandlesTest, DoesNotLookAtAPlaceThatIsGone)
{
    IdleHandles idle(100ms);
    auto place = std::make_unique<Place>();
    idle.keep(*place, newHandle());
    std::ignore = statusWhenItWaits();
    EXPECT_NE(idle.take(*place), nullptr);
    place.reset();
    EXPECT_TRUE(becomesTrue([this] { return threads() == threadsBefore; }));
}

TEST_F(IdleHandlesTest, EndsItsThreadWithTheLastReference)
{
    auto idle = IdleHandles::shared();
    EXPECT_EQ(IdleHandles::shared(), idle);
    Place place;
    idle->keep(place, newHandle());
    EXPECT_EQ(threads(), threadsBefore + 1);
    EXPECT_NE(idle->take(place), nullptr);
    idle.reset();
    EXPECT_TRUE(becomesTrue([this] { return threads() == threadsBefore; }));
}

[[noreturn]] void exitWithHandles()
{
    static const qsizetype before = threads();
    // Called after all that has begun to exist since.
    std::atexit([] {
        // By itself it would end after four seconds.
        if (!becomesTrue([] { return threads() == before; }, 1s))
            _exit(EXIT_FAILURE);
    });
    static auto* const idle = new std::shared_ptr(IdleHandles::shared());
    static auto* const place = new Place;
    (*idle)->keep(*place, newHandle());
    std::exit(threads() == before + 1 ? EXIT_SUCCESS : EXIT_FAILURE);
}

TEST_F(IdleHandlesTest, EndsItsThreadAtExitEvenIfConnectionsAreForgotten)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(exitWithHandles(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(IdleHandlesTest, KeepsAHandleAfterItsEndAndStartsNoOtherThread)
{
    IdleHandles idle(1ms);
    idle.stop();
    Place place;
    idle.keep(place, newHandle());
    EXPECT_EQ(threads(), threadsBefore);
    EXPECT_NE(idle.take(place), nullptr);
}

TEST_F(IdleHandlesTest, KeepsAHandleWhenNoThreadCanBeStarted)
{
    pthread_attr_t usual;
    pthread_getattr_default_np(&usual);
    pthread_attr_t huge;
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, std::size_t(1) << 50);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    IdleHandles idle(1ms);
    Place place;
    idle.keep(place, newHandle());
    EXPECT_EQ(threads(), threadsBefore);
    pthread_setattr_default_np(&usual);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);

    auto handle = idle.take(place);
    ASSERT_NE(handle, nullptr);
    idle.keep(place, std::move(handle));
    EXPECT_TRUE(becomesTrue([this] { return threads() == threadsBefore; }));
    EXPECT_EQ(idle.take(place), nullptr);
}

TEST_F(IdleHandlesTest, LeavesSignalsToTheProgram)
{
    IdleHandles idle(never);
    Place place;
    idle.keep(place, newHandle());
    const QByteArray status = statusWhenItWaits();
    // All but SIGKILL, SIGSTOP and the two of the C library.
    EXPECT_TRUE(status.contains("\nSigBlk:\tfffffffe7ffbfeff\n")) << status.toStdString();
    EXPECT_NE(idle.take(place), nullptr);
}

// What a child that has inherited handles does, in turn with its exit status.
int useInChild(std::shared_ptr<IdleHandles> idle, Place& inherited)
{
    alarm(20);
    const qsizetype threadsBefore = threads();
    auto handle = idle->take(inherited);
    if (!handle)
        return 1;
    idle->keep(inherited, std::move(handle));
    if (threads() != threadsBefore + 1)
        return 2;
    std::ignore = idle->take(inherited);
    idle.reset();
    return becomesTrue([&] { return threads() == threadsBefore; }) ? 0 : 3;
}

TEST_F(IdleHandlesTest, WorksInAForkedProcess)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "ThreadSanitizer cannot start threads in a forked process.";
#endif
    auto idle = IdleHandles::shared();
    Place place;
    idle->keep(place, newHandle());
    std::ignore = statusWhenItWaits();
    const pid_t child = fork();
    if (child == 0)
        _exit(useInChild(std::move(idle), place));
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_NE(idle->take(place), nullptr);
}

} // namespace
