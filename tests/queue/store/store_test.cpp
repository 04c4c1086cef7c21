#include "tests/queue/store/storetest.h"

#include "queue/store/storeerror.h"
#include "tests/support/textfile.h"

#include <QSqlError>

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using namespace std::chrono_literals;
using testing::HasSubstr;

class StoreFile : public StoreTest
{
protected:
    // What the message says after the file's name.
    [[nodiscard]] QString complaint() const
    {
        const QString start = place() + u": the queue cannot be used: "_s;
        const QString message = messageOf<StoreError>([&] { const Store other(place(), u"shop_1"_s, 10ms); });
        return message.startsWith(start) ? message.sliced(start.size()) : message;
    }
};

INSTANTIATE_TEST_SUITE_P(Stores, StoreFile, testing::Values(PlaceKind::Sqlite), placeKindName);

// To others, SQLite shows by a lock of the process that the file is in use; the last to close it removes the
// write-ahead log.
TEST_P(StoreFile, StaysInUseWhereItIsOpenedTwice)
{
    const Store other(place(), u"shop_1"_s);
    const QByteArray path = QFile::encodeName(place());
    const pid_t child = fork();
    if (child == 0) {
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = 0x40000002;
        lock.l_len = 510;
        const int descriptor = open(path.constData(), O_RDWR | O_CLOEXEC);
        _exit(fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

// Else the write-ahead log grows for as long as a person is paging through the results.
TEST_P(StoreFile, IsNotKeptBusyByAReaderOfResults)
{
    addOne(store, newEntry(u"r1"_s));
    store.note(store.find(u"r1"_s)->number, "finished", 0, 1, "{}");
    Store other(place(), u"shop_1"_s, 10ms);
    int isBusy = -1;
    forEachResult(store, 0, [&](qint64, const QByteArray&) {
        isBusy = other.database().value("PRAGMA wal_checkpoint(TRUNCATE)").toInt();
        return true;
    });
    EXPECT_EQ(isBusy, 0);
}

TEST_P(StoreFile, IsForItsOwnerAlone)
{
    WorkerLocks locks(store);
    addOne(store, newEntry(u"r1"_s));
    for (const char* suffix : {"", "-wal", "-shm", "-workers"}) {
        struct stat status
        {
        };
        const QByteArray path = (place() + QString::fromLatin1(suffix)).toLocal8Bit();
        ASSERT_EQ(stat(path.constData(), &status), 0) << path.constData();
        EXPECT_EQ(status.st_mode & 0777U, 0600U) << path.constData();
    }
}

TEST_P(StoreFile, WaitsForTheDisk)
{
    EXPECT_EQ(store.database().value("PRAGMA synchronous").toInt(), 2);
    EXPECT_EQ(store.database().value("PRAGMA journal_mode").toString(), u"wal"_s);
}

// Such as one that is stopped, or waits for its disk.
TEST_P(StoreFile, CanBeReadWhileAnotherProcessChangesIt)
{
    addOne(store, newEntry(u"r1"_s));
    store.database().transaction([this] {
        Store other(place(), u"shop_1"_s, 10ms);
        EXPECT_TRUE(other.find(u"r1"_s));
    });
}

TEST_P(StoreFile, OfANewerVersionIsLeftAlone)
{
    store.database().change("PRAGMA user_version = 2");
    EXPECT_EQ(complaint(), u"it was written by a newer version of this program (format 2, known here: 1)."_s);
}

TEST_P(StoreFile, OfAnotherProgramIsLeftAlone)
{
    store.database().change("PRAGMA application_id = 7");
    EXPECT_EQ(complaint(), u"the file is a database of another program."_s);
}

class AnyStore : public StoreTest
{
};
STORE_TEST_SUITE(AnyStore);

TEST_P(AnyStore, IsLeftAsItIsByWhoeverOnlyLooks)
{
    const TestPlace elsewhere(GetParam());
    const auto complaint = [&](const QString& there, const QString& address) {
        return messageOf<till::Error>([&] {
            const Store other(there, address, Store::defaultPatience, {}, Missing::Report);
        }).toStdString();
    };
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(complaint(elsewhere.place(), u"shop_1"_s), HasSubstr("there is no queue here yet"));
        EXPECT_THAT(complaint(place(), u"shop_2"_s), HasSubstr("The queue holds receipts of: shop_1."));
        EXPECT_EQ(complaint(place(), u"shop_1"_s), std::string());
    }
}

TEST_P(AnyStore, KeepsRegistersApart)
{
    Store other(place(), u"shop_2"_s);
    addOne(store, newEntry(u"r1"_s));
    EXPECT_FALSE(other.find(u"r1"_s));
    EXPECT_EQ(addOne(other, newEntry(u"r1"_s, "bread")), Added::New);
}

TEST_P(AnyStore, KeepsEveryCharacter)
{
    NewEntry entry = newEntry(u"r'1\\' \"?\" ? @now $1 %1 \n чек\U0001F9FE"_s);
    entry.digest.clear();
    for (int byte = 0; byte < 256; ++byte)
        entry.digest += static_cast<char>(byte);
    entry.file = u"?.json"_s;
    addOne(store, entry);
    const Entry kept = store.find(entry.id).value();
    EXPECT_EQ(kept.id, entry.id);
    EXPECT_EQ(kept.file, entry.file);
    EXPECT_EQ(kept.text, entry.text);
    EXPECT_EQ(kept.digest, entry.digest);
}

TEST_P(AnyStore, NeverAltersAnEvent)
{
    addOne(store, newEntry(u"r1"_s));
    for (const char* statement : {"UPDATE events SET event = 'other'", "DELETE FROM events"})
        EXPECT_THROW(store.database().change(statement), StoreError) << statement;
    EXPECT_EQ(history(u"r1"_s), QStringList{u"added"_s});
}

TEST(StoreAddress, TellsTheRegisterAsTheJournalDoes)
{
    const QString expected = u"https://service.example/possystem/v4/shop_1"_s;
    EXPECT_EQ(registerAddress(u"https://service.example/possystem/v4/"_s, u"shop_1"_s), expected);
    EXPECT_EQ(registerAddress(u"https://service.example/possystem/v4"_s, u"shop_1"_s), expected);
}

class Intake : public StoreTest
{
};

STORE_TEST_SUITE(Intake);

TEST_P(Intake, OfTheSameReceiptAgainIsNoError)
{
    EXPECT_EQ(addOne(store, newEntry(u"r1"_s)), Added::New);
    NewEntry spelledOtherwise = newEntry(u"r1"_s);
    spelledOtherwise.text = R"({ "goods" : "milk", "id":"r1" })";
    EXPECT_EQ(addOne(store, spelledOtherwise), Added::Known);
    EXPECT_EQ(history(u"r1"_s), QStringList{u"added"_s});
}

TEST_P(Intake, OfOtherContentUnderAnIdStoresNothingAtAll)
{
    addOne(store, newEntry(u"r1"_s));
    const auto several = [&] {
        storeAll(store, [&](const auto& add) {
            std::ignore = add(newEntry(u"r2"_s));
            std::ignore = add(newEntry(u"r1"_s, "bread"));
        });
    };
    EXPECT_TRUE(messageOf<till::Error>(several).startsWith(
        u"a.json:3: /id: another receipt is queued under \"r1\" since "_s));
    EXPECT_FALSE(store.find(u"r2"_s));
}

} // namespace
