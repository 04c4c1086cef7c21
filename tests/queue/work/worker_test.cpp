#include "queue/work/worker.h"

#include "queue/store/storeerror.h"
#include "tests/queue/store/storetest.h"
#include "tests/support/process.h"

#include <QThread>

#include <gmock/gmock.h>

#include <future>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace queue;
using testing::HasSubstr;

// A worker without a plugin: as soon as it can use its store, it ends with an error that names no store.
class WorkerOfAStore : public testing::Test
{
protected:
    WorkerOfAStore()
    {
        // Qt takes the first thread that it sees for the main one, whose data alone it releases at exit.
        static_cast<void>(QThread::currentThread());
        surroundings.store = folder.filePath(u"queue.db"_s);
        surroundings.address = u"shop_1"_s;
        surroundings.lease = std::chrono::seconds(5);
        surroundings.patience = std::chrono::milliseconds(1);
        surroundings.say = [this](const QString& text) {
            const std::scoped_lock lock(guard);
            said += text + u'\n';
        };
    }

    [[nodiscard]] static QString endOf(Worker& worker)
    {
        try {
            return worker.run() ? u"good"_s : u"given up"_s;
        } catch (const StoreError& error) {
            return u"store: "_s + error.message();
        } catch (const till::Error& error) {
            return u"worked: "_s + error.message();
        }
    }
    [[nodiscard]] bool hasSaid(const QString& text)
    {
        return comesTrue([&] {
            const std::scoped_lock lock(guard);
            return said.contains(text);
        });
    }

    QTemporaryDir folder{folderTemplate()};
    Surroundings surroundings;
    std::mutex guard;
    QString said;
};

TEST_F(WorkerOfAStore, GoesOnWhenTheFolderIsThere)
{
    const QString missing = folder.filePath(u"missing"_s);
    surroundings.store = missing + u"/queue.db"_s;
    Worker worker(surroundings, 2, u"w"_s);
    std::future<QString> end = std::async(std::launch::async, [&] { return endOf(worker); });
    EXPECT_TRUE(hasSaid(u"missing/queue.db: the queue cannot be used: "_s));
    ASSERT_TRUE(QDir().mkdir(missing));
    EXPECT_THAT(end.get().toStdString(), testing::StartsWith("worked: "));
    EXPECT_TRUE(hasSaid(u"missing/queue.db: the queue can be used again."_s));
    EXPECT_EQ(said.count(u"The worker waits"_s), 1);
}

TEST_F(WorkerOfAStore, GoesOnWhenALockIsReleased)
{
    Store other(surroundings.store, surroundings.address);
    other.database().change("BEGIN EXCLUSIVE");
    Worker worker(surroundings, 1, u"w"_s);
    std::future<QString> end = std::async(std::launch::async, [&] { return endOf(worker); });
    EXPECT_TRUE(hasSaid(u"database is locked"_s));
    other.database().change("COMMIT");
    EXPECT_THAT(end.get().toStdString(), testing::StartsWith("worked: "));
}

TEST_F(WorkerOfAStore, StopsWhileItWaits)
{
    surroundings.store = folder.filePath(u"missing/queue.db"_s);
    int signs = 0;
    surroundings.showLife = [&] { ++signs; };
    Worker worker(surroundings, 1, u"w"_s);
    std::future<QString> end = std::async(std::launch::async, [&] { return endOf(worker); });
    EXPECT_TRUE(hasSaid(u"The worker waits for it."_s));
    worker.stop();
    EXPECT_EQ(end.get(), u"good"_s);
    EXPECT_GE(signs, 1);
}

TEST_F(WorkerOfAStore, DoesNotWaitForWhatDoesNotPass)
{
    {
        Store store(surroundings.store, surroundings.address);
        store.database().change("PRAGMA user_version = 99");
    }
    Worker newer(surroundings, 1, u"w"_s);
    EXPECT_THAT(endOf(newer).toStdString(), HasSubstr("newer version"));
    surroundings.store = folder.filePath(u"text"_s);
    QFile text(surroundings.store);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly) && text.write(QByteArray(5000, 'x')) == 5000);
    text.close();
    Worker wrong(surroundings, 1, u"w"_s);
    EXPECT_THAT(endOf(wrong).toStdString(), HasSubstr("file is not a database"));
    surroundings.store = folder.filePath(u"missing/queue.db"_s);
    surroundings.untilEmpty = true;
    Worker once(surroundings, 1, u"w"_s);
    EXPECT_THAT(endOf(once).toStdString(), testing::StartsWith("store: "));
    EXPECT_EQ(said, QString());
}

class StoreInAFile : public StoreTest
{
};
INSTANTIATE_TEST_SUITE_P(Stores, StoreInAFile, testing::Values(PlaceKind::Sqlite), placeKindName);

TEST_P(StoreInAFile, IsNotedWhenItIsReplaced)
{
    store.requirePlace();
    ASSERT_TRUE(QFile::rename(place(), place() + u"-away"_s));
    EXPECT_THROW(store.requirePlace(), StoreError);
    Store other(place(), u"shop_1"_s);
    EXPECT_THROW(store.requirePlace(), StoreError);
    other.requirePlace();
}

} // namespace
