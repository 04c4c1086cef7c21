#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/journal/journal.h"
#include "till/journal/journalerror.h"

#include <QFileInfo>
#include <QSqlError>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;
using namespace std::chrono_literals;

ComposedReceipt composed(const char* id, const char* content = "milk", const char* fiscalRegister = "shop_1")
{
    return {QString::fromLatin1(fiscalRegister), QString::fromLatin1(id), content};
}

class JournalFile : public testing::Test
{
protected:
    [[nodiscard]] QString file() const { return folder.filePath(u"journal.db"_s); }
    // What the message says after the file's name.
    [[nodiscard]] QString complaint() const
    {
        const QString start = file() + u": the journal cannot be used: "_s;
        const QString message = messageOf<JournalError>([&] { const Journal journal(file(), 10ms); });
        return message.startsWith(start) ? message.sliced(start.size()) : message;
    }
    void change(const char* statement) const
    {
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"change"_s);
            database.setDatabaseName(file());
            ASSERT_TRUE(database.open());
            QSqlQuery query(database);
            EXPECT_TRUE(query.exec(QString::fromLatin1(statement))) << query.lastError().text().toStdString();
        }
        QSqlDatabase::removeDatabase(u"change"_s);
    }
    [[nodiscard]] JournalClaim claim(Journal& journal, const ComposedReceipt& receipt) const
    {
        return journal.claim(receipt, u"receipts.jsonl"_s, 7);
    }

    QTemporaryDir folder;
};

TEST_F(JournalFile, IsForItsOwnerAlone)
{
    const mode_t before = umask(0);
    {
        Journal journal(file());
        std::ignore = claim(journal, composed("r1"));
        for (const char* suffix : {"", "-wal", "-shm"}) {
            struct stat status
            {
            };
            const QByteArray path = (file() + QString::fromLatin1(suffix)).toLocal8Bit();
            ASSERT_EQ(stat(path.constData(), &status), 0) << path.constData();
            EXPECT_EQ(status.st_mode & 0777U, 0600U) << path.constData();
        }
    }
    umask(before);
}

TEST_F(JournalFile, KeepsWhatIsKnownOfAReceipt)
{
    JournalClaim claimed;
    {
        Journal journal(file());
        claimed = claim(journal, composed("r1"));
        EXPECT_FALSE(claimed.earlier || claimed.conflict || claimed.twin);
        journal.conclude(
            claimed, ReceiptState::Registered, u"u-1"_s, JournalEvidence{u"9"_s, 3, u"1"_s, 160});
    }
    Journal journal(file());
    const auto record = journal.find(u"shop_1"_s, u"r1"_s);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->state, ReceiptState::Registered);
    EXPECT_EQ(record->digest, QByteArray("milk"));
    EXPECT_EQ(record->uuid, u"u-1"_s);
    EXPECT_EQ(record->file, u"receipts.jsonl"_s);
    EXPECT_EQ(record->line, 7);
    EXPECT_EQ(record->attempt, 1);
    EXPECT_LE(std::abs(record->sent.secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_FALSE(journal.find(u"shop_2"_s, u"r1"_s)) << "an id is unique at its register only";
    EXPECT_FALSE(journal.find(u"shop_1"_s, u"r2"_s));
}

TEST_F(JournalFile, RefusesOtherContentUnderAnIdThatTheServiceMayHave)
{
    Journal journal(file());
    for (const ReceiptState state : {ReceiptState::Sent, ReceiptState::Unknown, ReceiptState::Accepted,
             ReceiptState::Failed, ReceiptState::Incomplete, ReceiptState::Registered}) {
        const QByteArray id = nameOf(state).toLatin1();
        const JournalClaim first = claim(journal, composed(id.constData()));
        if (state != ReceiptState::Sent)
            journal.conclude(first, state, {}, {});
        const JournalClaim other = claim(journal, composed(id.constData(), "bread"));
        ASSERT_TRUE(other.conflict) << id.constData();
        EXPECT_EQ(other.conflict->state, state) << id.constData();
        EXPECT_EQ(journal.find(u"shop_1"_s, QString::fromLatin1(id))->digest, QByteArray("milk"));
        EXPECT_FALSE(claim(journal, composed(id.constData(), "bread", "shop_2")).conflict) << id.constData();

        const JournalClaim again = claim(journal, composed(id.constData()));
        EXPECT_FALSE(again.conflict) << id.constData();
        ASSERT_TRUE(again.earlier) << id.constData();
        EXPECT_EQ(again.earlier->state, state);
        EXPECT_EQ(again.attempt, 2);
    }
}

TEST_F(JournalFile, LetsARefusedReceiptBeCorrected)
{
    Journal journal(file());
    journal.conclude(claim(journal, composed("r1")), ReceiptState::Refused, {}, {});
    const JournalClaim corrected = claim(journal, composed("r1", "bread"));
    EXPECT_FALSE(corrected.conflict || corrected.earlier);
    EXPECT_EQ(corrected.attempt, 2);
    EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->state, ReceiptState::Sent);
    EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->digest, QByteArray("bread"));
    EXPECT_TRUE(claim(journal, composed("r1", "milk")).conflict);
}

TEST_F(JournalFile, DoesNotForgetWhatTheServiceSaid)
{
    Journal journal(file());
    const JournalClaim first = claim(journal, composed("r1"));
    journal.conclude(first, ReceiptState::Registered, u"u-1"_s, {});
    for (const ReceiptState state : {ReceiptState::Unknown, ReceiptState::Refused, ReceiptState::Accepted,
             ReceiptState::Failed, ReceiptState::Incomplete}) {
        journal.conclude(claim(journal, composed("r1")), state, {}, {});
        EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->state, ReceiptState::Registered)
            << nameOf(state).toStdString();
        EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->uuid, u"u-1"_s);
    }
}

// Another process works on the same receipt; what the service has said holds for both.
TEST_F(JournalFile, LetsAnOlderAttemptAddOnlyWhatTheServiceSaid)
{
    Journal journal(file());
    const JournalClaim older = claim(journal, composed("r1"));
    const JournalClaim later = claim(journal, composed("r1"));
    journal.conclude(older, ReceiptState::Refused, {}, {});
    EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->state, ReceiptState::Sent);
    journal.withdraw(older);
    EXPECT_TRUE(journal.find(u"shop_1"_s, u"r1"_s));
    journal.conclude(older, ReceiptState::Registered, u"u-1"_s, {});
    EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->state, ReceiptState::Registered);
    journal.conclude(later, ReceiptState::Unknown, {}, {});
    EXPECT_EQ(journal.find(u"shop_1"_s, u"r1"_s)->state, ReceiptState::Registered);
}

TEST_F(JournalFile, TakesBackOnlyAReceiptThatWasNew)
{
    Journal journal(file());
    journal.withdraw(claim(journal, composed("r1")));
    EXPECT_FALSE(journal.find(u"shop_1"_s, u"r1"_s));
    std::ignore = claim(journal, composed("r1"));
    journal.withdraw(claim(journal, composed("r1")));
    EXPECT_TRUE(journal.find(u"shop_1"_s, u"r1"_s));
}

TEST_F(JournalFile, FindsTheSameContentUnderAnotherIdWhileItsOutcomeIsUnknown)
{
    Journal journal(file());
    const JournalClaim first = claim(journal, composed("r1"));
    const auto twin = claim(journal, composed("r2")).twin;
    ASSERT_TRUE(twin);
    EXPECT_EQ(twin->id, u"r1"_s);
    EXPECT_FALSE(claim(journal, composed("r3", "bread")).twin);
    EXPECT_FALSE(claim(journal, composed("r4", "milk", "shop_2")).twin);
    journal.conclude(first, ReceiptState::Registered, {}, {});
    journal.withdraw(claim(journal, composed("r5")));
    change("UPDATE receipts SET sent = sent - 90000 WHERE id = 'r2'");
    EXPECT_FALSE(claim(journal, composed("r6")).twin) << "r1 is registered, r2 is of another day";
}

TEST_F(JournalFile, ForgetsReceiptsAfterFortyDays)
{
    constexpr int many = 1200;
    {
        Journal journal(file());
        std::ignore = claim(journal, composed("young"));
    }
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1200)"
           " INSERT INTO receipts (register, id, digest, state, attempt, file, line, sent, changed)"
           " SELECT 1, 'old-' || i, x'00', 'registered', 1, 'f', 1, unixepoch() - 40 * 86400 - 10, 0 FROM n");
    change("UPDATE receipts SET sent = unixepoch() - 40 * 86400 + 600 WHERE id = 'young'");
    Journal journal(file());
    const QDateTime now = QDateTime::currentDateTimeUtc();
    journal.removeOld({});
    journal.removeOld(now.addDays(-1));
    EXPECT_TRUE(journal.find(u"shop_1"_s, u"old-1"_s)) << "this machine's clock alone says that it is old";
    journal.removeOld(now.addDays(100));
    EXPECT_TRUE(journal.find(u"shop_1"_s, u"young"_s)) << "the service's clock alone says that it is old";
    EXPECT_FALSE(journal.find(u"shop_1"_s, u"old-1"_s));
    EXPECT_FALSE(journal.find(u"shop_1"_s, u"old-%1"_s.arg(many)));
    EXPECT_TRUE(journal.find(u"shop_1"_s, u"young"_s));
}

// Nobody else knows their ids.
TEST_F(JournalFile, KeepsReceiptsOfALocalRegisterForever)
{
    const ComposedReceipt local = composed("local", "milk", "register:/sample/0/");
    {
        Journal journal(file());
        std::ignore = claim(journal, local);
        std::ignore = claim(journal, composed("remote"));
    }
    change("UPDATE receipts SET sent = 0");
    Journal journal(file());
    journal.removeOld(QDateTime::currentDateTimeUtc());
    EXPECT_TRUE(journal.find(local.fiscalRegister, local.id));
    EXPECT_FALSE(journal.find(u"shop_1"_s, u"remote"_s));
}

TEST_F(JournalFile, TakesAFewHundredBytesAReceipt)
{
    constexpr int receipts = 500;
    {
        Journal journal(file());
        for (int i = 0; i < receipts; ++i) {
            const QByteArray id = "till-7-" + QByteArray::number(i);
            const ComposedReceipt receipt{u"https://online.example/possystem/v4/shop_1"_s,
                QString::fromLatin1(id), QByteArray(32, static_cast<char>(i))};
            journal.conclude(claim(journal, receipt), ReceiptState::Registered,
                u"2ea26f17-0884-4f08-b120-306fc096a58f"_s,
                JournalEvidence{u"9251440300046840"_s, i, u"3449555941"_s, 160});
        }
    }
    EXPECT_LT(QFileInfo(file()).size(), receipts * 400);
    RecordProperty("bytes_a_receipt", static_cast<int>(QFileInfo(file()).size() / receipts));
}

TEST_F(JournalFile, OfANewerVersionIsRefused)
{
    {
        const Journal journal(file());
    }
    change("PRAGMA user_version = 2");
    EXPECT_EQ(complaint(), u"it was written by a newer version of this program (format 2, known here: 1)."_s);
}

TEST_F(JournalFile, OfAnotherProgramIsRefused)
{
    {
        QFile created(file());
        ASSERT_TRUE(created.open(QIODevice::WriteOnly));
    }
    change("CREATE TABLE receipts (id)");
    EXPECT_EQ(complaint(), u"the file is a database of another program."_s);
    {
        QFile text(file());
        ASSERT_TRUE(text.open(QIODevice::WriteOnly));
        text.write("not a database");
    }
    EXPECT_EQ(complaint(), u"file is not a database."_s);
}

TEST_F(JournalFile, ThatCannotBeCreatedIsReported)
{
    EXPECT_EQ(messageOf<JournalError>([&] { const Journal journal(folder.path()); }),
        folder.path() + u": the journal cannot be used: Is a directory."_s);
    EXPECT_EQ(messageOf<JournalError>([&] { const Journal journal(u"/nonexistent/journal.db"_s); }),
        u"/nonexistent/journal.db: the journal cannot be used: No such file or directory."_s);
}

TEST_F(JournalFile, ThatIsLockedForTooLongIsReported)
{
    Journal journal(file(), 10ms);
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"lock"_s);
    database.setDatabaseName(file());
    ASSERT_TRUE(database.open());
    {
        QSqlQuery lock(database);
        ASSERT_TRUE(lock.exec(u"BEGIN IMMEDIATE"_s));
        EXPECT_EQ(messageOf<JournalError>([&] { std::ignore = claim(journal, composed("r1")); }),
            file() + u": the journal cannot be used: database is locked."_s);
        ASSERT_TRUE(lock.exec(u"ROLLBACK"_s));
    }
    EXPECT_FALSE(claim(journal, composed("r1")).conflict) << "nothing is left of the failure";
    database = {};
    QSqlDatabase::removeDatabase(u"lock"_s);
}

} // namespace
