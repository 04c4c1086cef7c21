#include "hostcli/terminal/qrcode.h"

#include "hostcli/failure.h"
#include "hostcli/terminal/qrpictures.h"
#include "tests/support/qrdecoder.h"
#include "tests/support/qtprinters.h"

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString receipt = u"t=20200115T2110&s=1030.00&fn=9251440300046840&i=29414&fp=1250830908&n=1"_s;

QList<QByteArray> readBack(const QImage& picture)
{
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    QByteArray bytes;
    for (int y = 0; y < grey.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(grey.constScanLine(y)), grey.width());
    return decodedQrCodes(
        bytes, static_cast<unsigned int>(grey.width()), static_cast<unsigned int>(grey.height()));
}

// What a person's telephone sees: bright white where a block is drawn, black elsewhere.
QImage seenOnTerminal(const QString& text)
{
    const QStringList lines =
        QString(text).remove(u"\x1b[97;40m"_s).remove(u"\x1b[0m"_s).split(u'\n', Qt::SkipEmptyParts);
    constexpr int pixels = 6;
    QImage image(
        static_cast<int>(lines.first().size() - 2), static_cast<int>(lines.size()) * 2, QImage::Format_RGB32);
    image.fill(Qt::black);
    for (int y = 0; y < lines.size(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QChar block = lines.at(y).at(x + 2);
            if (block == u'█' || block == u'▀')
                image.setPixelColor(x, 2 * y, Qt::white);
            if (block == u'█' || block == u'▄')
                image.setPixelColor(x, 2 * y + 1, Qt::white);
        }
    }
    return image.scaled(image.size() * pixels);
}

TEST(QrCode, IsReadBackFromItsPicture)
{
    for (const QString& text : {receipt, u"1"_s, u"чек на 100 рублей"_s})
        EXPECT_EQ(readBack(frhost::QrCode(text).picture()), QList<QByteArray>{text.toUtf8()});
}

TEST(QrCode, IsReadBackFromATerminal)
{
    EXPECT_EQ(
        readBack(seenOnTerminal(frhost::QrCode(receipt).halfBlocks())), QList<QByteArray>{receipt.toUtf8()});
}

TEST(QrCode, IsNothingForATextThatIsEmptyOrDoesNotFit)
{
    for (const QString& text : {QString(), QString(5000, u'x')}) {
        EXPECT_TRUE(frhost::QrCode(text).isNull());
        EXPECT_EQ(frhost::QrCode(text).halfBlocks(), QString());
    }
}

TEST(QrFileName, KeepsTheIdReadableAndInsideTheFolder)
{
    const std::pair<QString, QString> rows[] = {
        {u"till-7-000123"_s, u"till-7-000123.png"_s},
        {u"касса 7"_s, u"касса 7.png"_s},
        {u"a/b"_s, u"a%2Fb.png"_s},
        {u"../x"_s, u"%2E.%2Fx.png"_s},
        {u"100%"_s, u"100%25.png"_s},
        {u"a\nb"_s, u"a%0Ab.png"_s},
        {u"~a"_s, u"%7Ea.png"_s},
        {u"😀"_s, u"%F0%9F%98%80.png"_s},
        {QString(QChar(0xD83D)), u"%ED%A0%BD.png"_s},
    };
    for (const auto& [id, name] : rows)
        EXPECT_EQ(frhost::qrFileName(id), name);
}

// The id that a name was made of.
QString idOf(const QString& name)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(name.chopped(4).toUtf8());
    QString id;
    for (qsizetype i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes.at(i));
        const qsizetype length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t point = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (qsizetype k = 1; k < length; ++k)
            point = (point << 6U) | (static_cast<unsigned char>(bytes.at(i + k)) & 0x3FU);
        id += QChar::fromUcs4(point);
        i += length;
    }
    return id;
}

QString randomId(std::mt19937& random, std::size_t longest)
{
    const QString alphabet = u"aZ7~%EDA0./\\:*?\" _-\n\x01\x7f\u00e4чщ\u3042\u202e"_s;
    QString id;
    for (std::size_t left = 1 + random() % longest; left > 0; --left) {
        const bool isSurrogate = random() % 4 == 0;
        id += isSurrogate
                  ? QChar(static_cast<char16_t>(0xD800 + random() % 0x800))
                  : alphabet.at(static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size())));
    }
    return id;
}

TEST(QrFileName, LeadsBackToTheIdWhateverItIs)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20'000; ++round) {
        const QString id = randomId(random, 12);
        const QString name = frhost::qrFileName(id);
        ASSERT_EQ(idOf(name), id) << name.toStdString();
        ASSERT_FALSE(name.contains(u'/') || name.startsWith(u'.')) << name.toStdString();
    }
}

TEST(QrFileName, IsNeverTooLongAndNeverThatOfAnotherId)
{
    std::mt19937 random(2);
    QHash<QString, QString> ids;
    for (int round = 0; round < 20'000; ++round) {
        // Many of them begin alike.
        const QString id = QString(static_cast<qsizetype>(random() % 130), u'ч') + randomId(random, 4);
        for (const int longest : {255, 143}) {
            const QString name = frhost::qrFileName(id, longest);
            ASSERT_LE(name.toUtf8().size(), longest);
            const QString key = QString::number(longest) + name;
            ASSERT_EQ(ids.value(key, id), id) << name.toStdString();
            ids.insert(key, id);
        }
    }
    EXPECT_EQ(frhost::qrFileName(QString(251, u'a')).size(), 255) << "in full";
    EXPECT_TRUE(frhost::qrFileName(QString(252, u'a')).contains(u'~'));
}

TEST(QrPictures, AreNotWrittenThroughALink)
{
    const QTemporaryDir work;
    const frhost::QrPictures pictures(work.path());
    QFile precious(work.filePath(u"precious"_s));
    ASSERT_TRUE(precious.open(QIODevice::ReadWrite));
    ASSERT_TRUE(precious.link(work.filePath(u"till-1.png"_s)));
    EXPECT_EQ(pictures.write(u"till-1"_s, receipt), QString());
    EXPECT_EQ(precious.size(), 0);
    EXPECT_EQ(readBack(QImage(work.filePath(u"till-1.png"_s))), QList<QByteArray>{receipt.toUtf8()});
    EXPECT_EQ(QDir(work.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        (QStringList{u"precious"_s, u"till-1.png"_s}));
}

TEST(QrPictures, ThatCannotBeWrittenLeaveNothing)
{
    const QTemporaryDir work;
    const frhost::QrPictures pictures(work.path());
    ASSERT_TRUE(QDir(work.path()).mkdir(u"till-1.png"_s));
    EXPECT_NE(pictures.write(u"till-1"_s, receipt), QString());
    EXPECT_EQ(QDir(work.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{u"till-1.png"_s});
}

TEST(QrPictures, AreWrittenUnderTheIdIntoAFolderThatIsMade)
{
    const QTemporaryDir work;
    const frhost::QrPictures pictures(work.filePath(u"new/qr"_s));
    EXPECT_EQ(pictures.write(u"till-1"_s, receipt), QString());
    EXPECT_EQ(readBack(QImage(work.filePath(u"new/qr/till-1.png"_s))), QList<QByteArray>{receipt.toUtf8()});
    EXPECT_EQ(pictures.write(u"till-2"_s, QString()), QString());
    EXPECT_FALSE(QFile::exists(work.filePath(u"new/qr/till-2.png"_s)));
}

TEST(QrPictures, SayWhyAPictureWasNotWrittenAndThatTheReceiptIsRegistered)
{
    const QTemporaryDir work;
    const frhost::QrPictures pictures(work.path());
    ASSERT_TRUE(QDir(work.path()).mkdir(u"till-1.png"_s));
    const QString failure = pictures.write(u"till-1"_s, receipt);
    EXPECT_TRUE(failure.startsWith(work.filePath(u"till-1.png"_s))) << failure.toStdString();
    EXPECT_TRUE(failure.endsWith(u"The receipt is registered."_s)) << failure.toStdString();
}

TEST(QrPictures, AreRefusedBeforeAnythingIsSentWhereTheyCannotBeWritten)
{
    const QTemporaryDir work;
    QFile file(work.filePath(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_THROW(frhost::QrPictures(work.filePath(u"file"_s)), frhost::Failure);
    EXPECT_NO_THROW(frhost::QrPictures{QString()});
}

} // namespace
