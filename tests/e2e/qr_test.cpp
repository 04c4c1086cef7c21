#include "tests/e2e/support/shop.h"
#include "tests/support/qrdecoder.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
        return codes.size() == 1 ? QString::fromUtf8(codes.first()) : QStringLiteral("no single code");
    }

    [[nodiscard]] QStringList selling(const QString& id) const
    {
        return shop.arguments({QStringLiteral("sell"), shop.receipts({id})});
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
    QTemporaryDir folder;
};

TEST_F(SoldReceiptsQr, IsWrittenAsAPictureThatReadsAsTheText)
{
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("--qr-dir"), folder.path(),
        shop.receipts({QStringLiteral("r1"), QStringLiteral("r/2")})});
    ASSERT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    ASSERT_EQ(sold.lines().size(), 2);
    const QString text = sold.lines().at(0).value(QStringLiteral("qr")).toString();
    EXPECT_EQ(readBack(folder.filePath(QStringLiteral("r1.png"))), text);
    EXPECT_THAT(text.toStdString(), HasSubstr("&s=160.00&"));
    EXPECT_EQ(readBack(folder.filePath(QStringLiteral("r%2F2.png"))),
        sold.lines().at(1).value(QStringLiteral("qr")).toString());
}

TEST_F(SoldReceiptsQr, IsDrawnOnATerminalOnly)
{
    QStringList arguments = selling(QStringLiteral("r1"));
    EXPECT_THAT(runOnTerminal(frhostProgram(), arguments).out.toStdString(), Not(HasSubstr("█")))
        << "with --json only the text";
    arguments.removeAll(QStringLiteral("--json"));
    EXPECT_THAT(runOnTerminal(frhostProgram(), arguments).out.toStdString(), HasSubstr("\x1b[97;40m████"));
    EXPECT_THAT(run(frhostProgram(), arguments).out.toStdString(), Not(HasSubstr("█")));
}

TEST_F(SoldReceiptsQr, FailureIsReportedAndTheSaleIsNot)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("r1.png")));
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("--qr-dir"), folder.path(),
        shop.receipts({QStringLiteral("r1"), QStringLiteral("r2")})});
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_EQ(sold.columns({QStringLiteral("outcome")}),
        (QStringList{QStringLiteral("registered"), QStringLiteral("registered")}));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("r1.png: the picture of the QR code was not written"));
}

TEST_F(SoldReceiptsQr, FolderThatCannotBeMadeStopsTheRunBeforeAnythingIsSent)
{
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("--qr-dir"),
        QStringLiteral("/proc/none"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(sold.exitCode, 1);
    EXPECT_EQ(sold.out, QString());
    const Ran again = shop.frhost({QStringLiteral("sell"), shop.receipts({QStringLiteral("r1")})});
    EXPECT_EQ(again.columns({QStringLiteral("recovered")}), QStringList{QStringLiteral("-")});
}

} // namespace
