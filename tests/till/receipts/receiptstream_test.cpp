#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/error.h"
#include "till/receipts/receiptstream.h"

#include <gtest/gtest.h>

#include <array>
#include <fcntl.h>
#include <tuple>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

QString nextOf(ReceiptStream& stream)
{
    const auto receipt = stream.next();
    return receipt ? u"%1 %2"_s.arg(QString::number(receipt->line), QString::fromUtf8(receipt->text))
                   : QString();
}

TEST(Stream, HandsOutEachLineBeforeTheNextArrives)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const auto give = [&](const QByteArray& text) {
        EXPECT_EQ(write(ends[1], text.constData(), static_cast<std::size_t>(text.size())), text.size());
    };
    ReceiptStream stream(ends[0]);
    give("{1}\n");
    EXPECT_EQ(nextOf(stream), u"1 {1}"_s);
    give("\n \n{2}\n{3}\n{");
    EXPECT_EQ(nextOf(stream), u"4 {2}"_s);
    EXPECT_EQ(nextOf(stream), u"5 {3}"_s);
    give("4}");
    close(ends[1]);
    EXPECT_EQ(nextOf(stream), u"6 {4}"_s);
    EXPECT_EQ(nextOf(stream), QString());
    EXPECT_EQ(nextOf(stream), QString());
    close(ends[0]);
}

TEST(Stream, RefusesALineWithoutAnEnd)
{
    const TextFiles files;
    const QString name = files.file("endless", QByteArray(17 * 1024 * 1024, 'x'));
    const int descriptor = open(name.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    ReceiptStream stream(descriptor);
    EXPECT_EQ(messageOf<Error>([&] { std::ignore = stream.next(); }),
        u"-:1: a receipt may not be larger than 16 MiB"_s);
    close(descriptor);
}

TEST(Stream, ThatCannotBeReadIsAnError)
{
    ReceiptStream stream(-1);
    EXPECT_THROW(std::ignore = stream.next(), Error);
}

} // namespace
