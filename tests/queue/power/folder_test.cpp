#include "tests/queue/store/testplace.h"
#include "tests/support/qtprinters.h"
#include "till/database/privatefile.h"

#include <gtest/gtest.h>

#include <set>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

std::set<ino_t> synced;

bool isSynced(const QString& folder)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(folder).constData(), &status) == 0 && synced.contains(status.st_ino);
}

} // namespace

// In place of the C library's, whose declaration has another name for the parameter.
extern "C" int noteSync(int descriptor) asm("fsync");
int noteSync(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0)
        synced.insert(status.st_ino);
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

namespace {

// SQLite syncs the folder that its files are in, and none above.
TEST(PowerCut, TakesNoFolderAwayThatWasMadeForADatabase)
{
    const QTemporaryDir home(folderTemplate());
    EXPECT_EQ(till::makeFolderOf(home.filePath(u"state/frhost/queue.db"_s)), QString());
    EXPECT_TRUE(isSynced(home.path()));
    EXPECT_TRUE(isSynced(home.filePath(u"state"_s)));
    synced.clear();
    EXPECT_EQ(till::makeFolderOf(home.filePath(u"state/frhost/journal.db"_s)), QString());
    EXPECT_TRUE(synced.empty());
}

} // namespace
