#include "tests/queue/power/scenarios.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

#include <iostream>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace power;

// `POWER_IMAGES=10000` asks for more.
int images()
{
    bool isNumber = false;
    const int asked = qEnvironmentVariableIntValue("POWER_IMAGES", &isNumber);
    return isNumber ? asked : 1000;
}

void expectNoLoss(const Scenario& scenario, int count)
{
    const Requests requests = recordingOf(scenario);
    const Verdict verdict = verdictOn(requests, scenario, {.images = count});
    std::cout << "power cuts: " << verdict.images << " images of " << verdict.moments << " moments, "
              << verdict.problems.size() << " wrong\n";
    EXPECT_GE(verdict.images, count);
    EXPECT_TRUE(verdict.problems.isEmpty()) << verdict.problems.join(u'\n').toStdString();
}

QString firstLoss(const Requests& requests, const Scenario& scenario, const Disk::Lies& lies = {})
{
    const Verdict verdict = verdictOn(requests, scenario, {.images = 1000, .lies = lies, .mostProblems = 1});
    return verdict.problems.value(0);
}

TEST(PowerCut, LeavesAQueueWithEverythingThatWasPromised)
{
    expectNoLoss(queueDay(), images());
}

TEST(PowerCut, LeavesAJournalWithEverythingThatWasPromised)
{
    expectNoLoss(journalDay(), images());
}

TEST(PowerCut, LeavesADatabaseOfTheOldVersionOrTheNew)
{
    expectNoLoss(migration(), images());
}

// The same check finds what is wrong where the store does not wait for the disk...
TEST(PowerCut, IsFeltByAQueueThatDoesNotWaitForTheDisk)
{
    for (const char* setting : {"PRAGMA synchronous = OFF", "PRAGMA synchronous = NORMAL"}) {
        const Scenario scenario = queueDay(setting);
        EXPECT_NE(firstLoss(recordingOf(scenario), scenario), QString()) << setting;
    }
}

// ...and where the disk only says that it has done what it was asked to: for one file, or the names of files,
// from the creation on or later.
TEST(PowerCut, IsFeltByAQueueOnADiskThatLies)
{
    struct Lie
    {
        QByteArray about;
        int honestSyncs;
    };
    constexpr int creation = 12;
    const Scenario scenario = queueDay();
    const Requests requests = recordingOf(scenario);
    for (const Lie& lie : {Lie{"queue.db-journal", 0}, Lie{"queue.db", 0}, Lie{"queue.db", creation},
             Lie{"queue.db-wal", creation}, Lie{"", 0}, Lie{"", creation}}) {
        const auto lies = [lie, syncs = 0](const QByteArray& name) mutable {
            return ++syncs > lie.honestSyncs && name == lie.about;
        };
        const QString loss = firstLoss(requests, scenario, lies);
        EXPECT_NE(loss, QString()) << lie.about.constData() << " after " << lie.honestSyncs;
    }
}

} // namespace
