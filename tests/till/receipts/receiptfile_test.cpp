#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/error.h"
#include "till/receipts/receiptfile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QStringList readAll(ReceiptFile& file)
{
    QStringList all;
    RawReceipt raw;
    while (file.next(raw))
        all << u"%1 %2"_s.arg(QString::number(raw.line), QString::fromUtf8(raw.text.simplified()));
    return all;
}

class Receipts : public testing::Test
{
protected:
    [[nodiscard]] QStringList read(const QByteArray& text) const
    {
        ReceiptFile file(files.file("receipts", text));
        return readAll(file);
    }
    [[nodiscard]] QString messageFor(const QByteArray& text) const
    {
        return messageOf<Error>([&] { std::ignore = read(text); }).remove(files.path() + u'/');
    }

    TextFiles files;
};

TEST_F(Receipts, AreOneObjectOverAsManyLinesAsItLikes)
{
    EXPECT_EQ(read("\n{\"a\": \"}\\\"{\",\n\n \"b\": [1\n]}\n \n"),
        QStringList{u"2 {\"a\": \"}\\\"{\", \"b\": [1 ]}"_s});
}

TEST_F(Receipts, AreOneObjectALine)
{
    EXPECT_EQ(read("\xEF\xBB\xBF{\"a\":1}\r\n\n{\"b\":\n{\"c\":3}"),
        (QStringList{u"1 {\"a\":1}"_s, u"3 {\"b\":"_s, u"4 {\"c\":3}"_s}));
}

TEST_F(Receipts, AreNoneInAnEmptyFile)
{
    EXPECT_EQ(read(""), QStringList());
    EXPECT_EQ(read("\n \n"), QStringList());
}

TEST_F(Receipts, MayNotFollowOneOnSeveralLines)
{
    EXPECT_EQ(messageFor("{\n}\n\n{\n}\n"),
        u"receipts:4: only the single receipt of a file may span several lines; put each receipt on one line"_s);
}

TEST_F(Receipts, MayNotBeLargerThan16MiB)
{
    EXPECT_EQ(messageFor("{\"a\":\"" + QByteArray(17 * 1024 * 1024, 'x') + "\"}\n"),
        u"receipts:1: a receipt may not be larger than 16 MiB"_s);
    EXPECT_EQ(messageFor("{\n" + QByteArray("\"aaaaaaa\",\n").repeated(2 * 1024 * 1024) + "}\n"),
        u"receipts:1: a receipt may not be larger than 16 MiB"_s);
}

TEST_F(Receipts, DoNotBeginALineOfTheirOwnWithTheNameOfTheirFile)
{
    const QString name = files.path() + u"/a\nr1: registered"_s;
    const QString shown = files.path() + u"/a\uFFFDr1: registered"_s;
    const QString missing = messageOf<Error>([&] { const ReceiptFile file(name); });
    EXPECT_TRUE(missing.startsWith(shown + u": "_s)) << missing.toStdString();
    const QString wrong = messageOf<Error>([&] {
        ReceiptFile file(files.file("a\nr1: registered", "{\n}\n{}"));
        std::ignore = readAll(file);
    });
    EXPECT_TRUE(wrong.startsWith(shown + u":3: "_s)) << wrong.toStdString();
}

TEST_F(Receipts, CanBeReadAgain)
{
    ReceiptFile file(files.file("receipts", "{\"a\":1}\n{\"b\":2}\n"));
    const QStringList once = readAll(file);
    file.rewind();
    EXPECT_EQ(readAll(file), once);
    EXPECT_EQ(once.size(), 2);
}

TEST_F(Receipts, FromAPipeCanBeReadAgainToo)
{
    const QString pipe = files.path() + u"/pipe"_s;
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    std::thread writer([&] {
        QFile end(pipe);
        if (end.open(QIODevice::WriteOnly))
            end.write("{\"a\":1}\n{\"b\":2}\n");
    });
    ReceiptFile file(pipe);
    writer.join();
    const QStringList once = readAll(file);
    file.rewind();
    EXPECT_EQ(readAll(file), once);
    EXPECT_EQ(once.size(), 2);
}

TEST_F(Receipts, ThatCannotBeReadAreReported)
{
    EXPECT_EQ(messageOf<Error>([] { ReceiptFile file(u"/nonexistent/a"_s); }),
        u"/nonexistent/a: No such file or directory"_s);
    EXPECT_FALSE(messageOf<Error>([&] { ReceiptFile file(files.path()); }).isEmpty()) << "a folder";
}

TEST_F(Receipts, FromAPipeMayHave256MebibytesAndNotAByteMore)
{
    constexpr int blocks = 256;
    const QString pipe = files.path() + u"/pipe"_s;
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    for (const bool hasMore : {false, true}) {
        std::thread writer([&] {
            QFile end(pipe);
            EXPECT_TRUE(end.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
            const QByteArray block(1024 * 1024, '\n');
            for (int i = 0; i < blocks; ++i)
                EXPECT_EQ(end.write(block), block.size());
            if (hasMore) {
                EXPECT_EQ(end.write("\n"), 1);
            }
        });
        EXPECT_EQ(messageOf<Error>([&] { ReceiptFile file(pipe); }).isEmpty(), !hasMore);
        writer.join();
    }
}

TEST_F(Receipts, WithoutEndAreRefused)
{
    EXPECT_EQ(messageOf<Error>([] { ReceiptFile file(u"/dev/zero"_s); }),
        u"/dev/zero: more than 256 MiB, the most that is read from standard input or a pipe. Nothing was "
        u"sent. "
        u"Put the receipts into a file."_s);
}

} // namespace
