#include "hostcli/log/logfile.h"

#include "hostcli/failure.h"
#include "tests/support/outcome.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

TEST(LogFile, GrowsByALineForEachCallAndIsForItsOwnerAlone)
{
    const TextFiles files;
    const QString path = files.path() + u"/log"_s;
    EXPECT_EQ(LogFile(path).append(u"первая"_s), QString());
    EXPECT_EQ(LogFile(path).append(u"second"_s), QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "первая\nsecond\n");
    EXPECT_EQ(QFileInfo(path).permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther), 0);
}

TEST(LogFile, ThatCannotBeOpenedEndsTheRun)
{
    EXPECT_EQ(messageOf<Failure>([] { const LogFile file(u"/nonexistent/log"_s); }),
        u"The log file /nonexistent/log cannot be written: No such file or directory. Name another one with "
        "--log-file FILE."_s);
}

TEST(LogFile, OnAFullDiskComplainsOnce)
{
    LogFile full(u"/dev/full"_s);
    EXPECT_EQ(full.append(u"a"_s), u"The log file /dev/full cannot be written: No space left on device."_s);
    EXPECT_EQ(full.append(u"b"_s), QString());
}

} // namespace
