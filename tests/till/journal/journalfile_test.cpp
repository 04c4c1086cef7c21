#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/journal/journalerror.h"
#include "till/journal/journalfile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// The variables that the place depends on, as before once the test is over.
class JournalPlace : public testing::Test
{
protected:
    JournalPlace()
    {
        for (const char* name : names) {
            before << qgetenv(name);
            qunsetenv(name);
        }
    }
    ~JournalPlace() override
    {
        for (qsizetype i = 0; i < before.size(); ++i) {
            if (!before[i].isNull())
                qputenv(names[static_cast<std::size_t>(i)], before[i]);
            else
                qunsetenv(names[static_cast<std::size_t>(i)]);
        }
    }

    static constexpr std::array names{"STATE_DIRECTORY", "XDG_STATE_HOME", "HOME"};
    QList<QByteArray> before;
};

TEST_F(JournalPlace, IsTheFolderThatTheEnvironmentNames)
{
    EXPECT_EQ(defaultJournalFile(), QString());
    qputenv("HOME", "/home/till");
    EXPECT_EQ(defaultJournalFile(), u"/home/till/.local/state/frhost/journal.db"_s);
    qputenv("XDG_STATE_HOME", "relative");
    EXPECT_EQ(defaultJournalFile(), u"/home/till/.local/state/frhost/journal.db"_s);
    qputenv("XDG_STATE_HOME", "/state");
    EXPECT_EQ(defaultJournalFile(), u"/state/frhost/journal.db"_s);
    qputenv("STATE_DIRECTORY", "/var/lib/till:/var/lib/other");
    EXPECT_EQ(defaultJournalFile(), u"/var/lib/till/journal.db"_s);
}

TEST(JournalFolder, IsCreatedForItsOwnerAlone)
{
    const QTemporaryDir folder;
    const mode_t before = umask(0);
    createFolderOf(folder.filePath(u"state/frhost/journal.db"_s));
    createFolderOf(folder.filePath(u"state/frhost/journal.db"_s));
    umask(before);
    for (const QString& created : {u"state"_s, u"state/frhost"_s}) {
        struct stat status
        {
        };
        ASSERT_EQ(stat(folder.filePath(created).toLocal8Bit().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U) << created.toStdString();
    }
}

TEST(JournalFolder, ThatCannotBeCreatedIsReported)
{
    EXPECT_EQ(messageOf<JournalError>([] { createFolderOf(u"/dev/null/frhost/journal.db"_s); }),
        u"/dev/null/frhost/journal.db: the journal cannot be used: Not a directory."_s);
}

} // namespace
