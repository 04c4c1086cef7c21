#include "hostcli/terminal/console.h"

#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"

#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

TEST(Journal, IsKnownByDeviceAndInode)
{
    const TextFiles files;
    QFile file(files.file("journal", ""));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    struct stat status = {};
    ASSERT_EQ(fstat(file.handle(), &status), 0);
    const QByteArray device = QByteArray::number(static_cast<quint64>(status.st_dev));
    const QByteArray inode = QByteArray::number(static_cast<quint64>(status.st_ino));
    EXPECT_TRUE(leadsToJournal(file.handle(), device + ':' + inode));
    EXPECT_FALSE(leadsToJournal(file.handle(), device + ':' + inode + '1'));
    EXPECT_FALSE(leadsToJournal(file.handle(), QByteArray()));
    EXPECT_FALSE(leadsToJournal(-1, device + ':' + inode));
}

TEST(Journal, GetsAPriorityForEachLine)
{
    EXPECT_EQ(withPriority(u"a\nb"_s, Urgency::Error), u"<3>a\n<3>b"_s);
    EXPECT_EQ(withPriority(u"a"_s, Urgency::Debug), u"<7>a"_s);
}

} // namespace
