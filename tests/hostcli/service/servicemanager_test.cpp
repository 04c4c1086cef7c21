#include "hostcli/service/servicemanager.h"

#include "tests/support/notifysocket.h"
#include "tests/support/qtprinters.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using frhost::ServiceManager;

TEST(ServiceManager, IsToldOfStateAndStatus)
{
    const QTemporaryDir folder;
    for (const QByteArray& name :
        {QFile::encodeName(folder.filePath(u"s"_s)), "@frhost-test-" + QByteArray::number(getpid())}) {
        const NotifySocket manager(name);
        const ServiceManager told;
        told.reportReady();
        told.reportStatus(u"one\nREADY=0 два"_s);
        told.reportStopping();
        EXPECT_EQ(manager.heard(), (QByteArrayList{"READY=1", "STATUS=one READY=0 два", "STOPPING=1"}))
            << name.constData();
    }
}

TEST(ServiceManager, HearsSignsOfLifeAsOftenAsItAsks)
{
    const NotifySocket manager("@frhost-test-" + QByteArray::number(getpid()));
    const auto signsOf = [&](ServiceManager told) {
        for (int i = 0; i < 100; ++i)
            told.reportAlive();
        return manager.heard();
    };
    EXPECT_EQ(signsOf({}), QByteArrayList());
    qputenv("WATCHDOG_USEC", "3600000000");
    EXPECT_EQ(signsOf({}), QByteArrayList{"WATCHDOG=1"});
    qputenv("WATCHDOG_PID", QByteArray::number(getpid()));
    EXPECT_EQ(signsOf({}), QByteArrayList{"WATCHDOG=1"});
    qputenv("WATCHDOG_USEC", "2");
    EXPECT_GT(signsOf({}).size(), 1);
    qputenv("WATCHDOG_PID", QByteArray::number(getpid() + 1));
    EXPECT_EQ(signsOf({}), QByteArrayList());
}

TEST(ServiceManager, MayBeMissing)
{
    const ServiceManager nobody;
    nobody.reportReady();
    qputenv("NOTIFY_SOCKET", "/nonexistent/" + QByteArray(200, 'x'));
    ServiceManager unreachable;
    unreachable.reportReady();
    unreachable.reportAlive();
    qunsetenv("NOTIFY_SOCKET");
}

} // namespace
