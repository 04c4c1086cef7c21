#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/error.h"
#include "till/receipts/receiptqueue.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QByteArray receipt(const char* id)
{
    return QByteArray(R"({"id":")") + id + R"(","requisites":[{"tag":1008,"value":"b@c"}],)" +
           R"("positions":[{"name":"n","price":1,"quantity":1,"sum":1}],"payments":[{"type":1,"sum":1}]})" +
           '\n';
}

class Queue : public testing::Test
{
protected:
    [[nodiscard]] QString messageFor(const QStringList& names) const
    {
        return messageOf<Error>([&] { const ReceiptQueue queue(names); }).remove(files.path() + u'/');
    }

    TextFiles files;
};

TEST_F(Queue, HandsOutTheReceiptsOfAllFilesInOrder)
{
    ReceiptQueue queue({files.file("b", receipt("1") + receipt("2")), files.file("a", "\n" + receipt("3"))});
    QStringList ids;
    queue.forEach([&](const QueuedReceipt& queued) {
        ids << u"%1:%2 %3"_s.arg(queued.file.section(u'/', -1), QString::number(queued.line),
            queued.receipt.document.getInternalIdentifier());
        return true;
    });
    EXPECT_EQ(ids, (QStringList{u"b:1 1"_s, u"b:2 2"_s, u"a:2 3"_s}));
    EXPECT_EQ(queue.count(), 3);
}

TEST_F(Queue, StopsWhenItIsTold)
{
    ReceiptQueue queue({files.file("a", receipt("1") + receipt("2")), files.file("b", receipt("3"))});
    int handed = 0;
    queue.forEach([&](const QueuedReceipt&) { return ++handed < 2; });
    EXPECT_EQ(handed, 2);
}

TEST_F(Queue, NamesEveryWrongReceiptAndSaysThatNothingWasSent)
{
    const QString good = files.file("a", receipt("1"));
    const QString bad = files.file(
        "b", receipt("2") + QByteArray(receipt("3")).replace("\"3\"", "3") + receipt("4") + "nonsense\n");
    const QString message = messageFor({good, bad});
    const QStringList lines = message.split(u'\n');
    ASSERT_EQ(lines.size(), 3) << message.toStdString();
    EXPECT_TRUE(lines[0].startsWith(u"b:2: /id: id must be a text in quotes"_s)) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].startsWith(u"b:4: not JSON: "_s)) << lines[1].toStdString();
    EXPECT_EQ(lines[2], u"Nothing was sent. Correct the receipts and run the command again."_s);
}

TEST_F(Queue, NamesTheLineInsideAReceiptOnSeveralLines)
{
    const QString message = messageFor(
        {files.file("a", "\n{\"id\": \"1\",\n \"positions\": "
                         "[],\"requisites\":[{\"tag\":1008,\"value\":\"b@c\"}],\n \"payments\": {}\n}\n")});
    EXPECT_TRUE(message.startsWith(u"a:4: /payments: "_s)) << message.toStdString();
}

TEST_F(Queue, WarnsOfTheLimitsOfTheServiceOrRefusesThem)
{
    const QByteArray free = receipt("1").replace("\"price\":1", "\"price\":1.001");
    const QString name = files.file("a", receipt("2") + free);
    const QString problem = u"a:2: /positions/0/price: the service accepts two decimals"_s;
    QStringList warnings;
    const ReceiptQueue warned({name}, {false, [&](const QString& warning) { warnings << warning; }});
    EXPECT_EQ(warned.count(), 2);
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_EQ(QString(warnings.first()).remove(files.path() + u'/'),
        problem + u". The service may refuse the receipt."_s);
    const QString refused = messageOf<Error>([&] { const ReceiptQueue queue({name}, {true}); });
    EXPECT_TRUE(QString(refused).remove(files.path() + u'/').startsWith(problem + u'\n'))
        << refused.toStdString();
}

TEST_F(Queue, RefusesAnIdThatOccursTwice)
{
    const QString a = files.file("a", receipt("1") + receipt("2"));
    const QString b = files.file("b", receipt("3") + receipt("1"));
    EXPECT_EQ(messageFor({a, b}),
        u"b:2: /id: the same id is used at a:1; the service would treat the second receipt as a "
        u"repeat of the first\nNothing was sent. Correct the receipts and run the command again."_s);
}

TEST_F(Queue, RefusesAFileWithoutReceipts)
{
    EXPECT_TRUE(messageFor({files.file("a", receipt("1")), files.file("b", "\n")})
                    .startsWith(u"b: the file contains no receipt\n"_s));
}

// What becomes of a file after it was checked, and how many of its receipts are still handed out.
struct Change
{
    const char* name;
    QByteArray after;
    int handed;
};

class ChangedQueue : public Queue, public testing::WithParamInterface<Change>
{
};

TEST_P(ChangedQueue, EndsWhereTheFileDiffersFromWhatWasChecked)
{
    const QString name = files.file("a", receipt("1") + receipt("2") + receipt("3"));
    ReceiptQueue queue({name, files.file("b", receipt("4"))});
    std::ignore = files.file("a", GetParam().after);
    int handed = 0;
    const QString message = messageOf<Error>([&] {
        queue.forEach([&](const QueuedReceipt&) {
            ++handed;
            return true;
        });
    });
    EXPECT_EQ(handed, GetParam().handed);
    EXPECT_EQ(message, name + u": the file has changed since it was checked; the rest was not sent"_s);
}

INSTANTIATE_TEST_SUITE_P(By, ChangedQueue,
    testing::Values(Change{"Nonsense", receipt("1") + "nonsense\n", 1},
        Change{"ABlankedLine", receipt("1") + "\n" + receipt("3"), 1},
        Change{"ABlankedLastLine", receipt("1") + receipt("2") + "\n", 2},
        Change{"AReplacedLine", receipt("1") + receipt("5") + receipt("3"), 1},
        Change{"TwoLinesThatChangedPlaces", receipt("1") + receipt("3") + receipt("2"), 1},
        Change{"AnInsertedLine", receipt("1") + receipt("5") + receipt("2") + receipt("3"), 1},
        Change{"AnAppendedLine", receipt("1") + receipt("2") + receipt("3") + receipt("5"), 3},
        Change{"AnAppendedCopy", receipt("1") + receipt("2") + receipt("3") + receipt("3"), 3},
        Change{"ATruncatedLine", receipt("1") + receipt("2").chopped(9), 1},
        Change{"AVanishedLine", receipt("1") + receipt("2"), 2}, Change{"VanishedContent", QByteArray(), 0}),
    [](const auto& change) { return change.param.name; });

TEST_F(Queue, AcceptsBlankLinesThatMoveTheSameReceipts)
{
    const QString name = files.file("a", receipt("1") + receipt("2"));
    ReceiptQueue queue({name});
    std::ignore = files.file("a", receipt("1") + "\n\n" + receipt("2"));
    QList<int> lines;
    queue.forEach([&](const QueuedReceipt& queued) {
        lines << queued.line;
        return true;
    });
    EXPECT_EQ(lines, (QList<int>{1, 4}));
}

} // namespace
