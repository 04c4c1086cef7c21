#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"
#include "tests/support/qrdecoder.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;
using testing::Not;

class SoldReceiptsQr : public testing::Test
{
protected:
    static QString readBack(const QString& file)
    {
        const QImage picture = QImage(file).convertToFormat(QImage::Format_Grayscale8);
        QByteArray grey;
        for (int y = 0; y < picture.height(); ++y)
            grey.append(reinterpret_cast<const char*>(picture.constScanLine(y)), picture.width());
        const QList<QByteArray> codes = decodedQrCodes(
            grey, static_cast<unsigned int>(picture.width()), static_cast<unsigned int>(picture.height()));
        return codes.size() == 1 ? QString::fromUtf8(codes.first()) : u"no single code"_s;
    }

    [[nodiscard]] QStringList selling(const QString& id) const
    {
        return shop.arguments({u"sell"_s, shop.receipts({id})});
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
    QTemporaryDir folder;
};

TEST_F(SoldReceiptsQr, IsWrittenAsAPictureOfTheText)
{
    const Ran sold =
        shop.frhost({u"sell"_s, u"--qr-dir"_s, folder.path(), shop.receipts({u"r1"_s, u"r/2"_s})});
    ASSERT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    ASSERT_EQ(sold.lines().size(), 2);
    const QString text = sold.lines().at(0).value(u"qr"_s).toString();
    EXPECT_EQ(readBack(folder.filePath(u"r1.png"_s)), text);
    EXPECT_THAT(text.toStdString(), HasSubstr("&s=160.00&"));
    EXPECT_EQ(readBack(folder.filePath(u"r%2F2.png"_s)), sold.lines().at(1).value(u"qr"_s).toString());
}

TEST_F(SoldReceiptsQr, IsDrawnOnlyOnATerminal)
{
    QStringList arguments = selling(u"r1"_s);
    EXPECT_THAT(runOnTerminal(frhostProgram(), arguments).out.toStdString(), Not(HasSubstr("█")))
        << "with --json only the text";
    arguments.removeAll(u"--json"_s);
    EXPECT_THAT(runOnTerminal(frhostProgram(), arguments).out.toStdString(), HasSubstr("\x1b[97;40m████"));
    EXPECT_THAT(run(frhostProgram(), arguments).out.toStdString(), Not(HasSubstr("█")));
}

TEST_F(SoldReceiptsQr, IsWrittenForTheLongestId)
{
    const Ran sold = shop.frhost({u"sell"_s, u"--qr-dir"_s, folder.path(),
        shop.receipts({QString(128, u'ч'), QString(127, u'ч') + u'/'})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(QDir(folder.path()).entryList({u"*.png"_s}).size(), 2);
}

TEST_F(SoldReceiptsQr, IsNotWrittenThroughALink)
{
    const QString precious = shop.file(u"precious"_s, "x");
    ASSERT_TRUE(QFile::link(precious, folder.filePath(u"r1.png"_s)));
    const Ran sold = shop.frhost({u"sell"_s, u"--qr-dir"_s, folder.path(), shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    QFile kept(precious);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray("x"));
    EXPECT_EQ(readBack(folder.filePath(u"r1.png"_s)), sold.lines().at(0).value(u"qr"_s).toString());
}

TEST_F(SoldReceiptsQr, FailureIsReportedWithTheSaleStillRegistered)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"r1.png"_s));
    const Ran sold =
        shop.frhost({u"sell"_s, u"--qr-dir"_s, folder.path(), shop.receipts({u"r1"_s, u"r2"_s})});
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_EQ(sold.columns({u"outcome"_s}), (QStringList{u"registered"_s, u"registered"_s}));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("r1.png: the picture of the QR code was not written"));
}

TEST_F(SoldReceiptsQr, FolderThatCannotBeCreatedStopsTheRunBeforeSending)
{
    const Ran sold = shop.frhost({u"sell"_s, u"--qr-dir"_s, u"/proc/none"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_TRUE(sold.lines().isEmpty());
    const Ran again = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
    EXPECT_EQ(again.columns({u"recovered"_s}), QStringList{u"-"_s});
}

} // namespace
