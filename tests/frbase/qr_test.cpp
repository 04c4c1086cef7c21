#include "frbase/basicfrdriver.h"
#include "frbase/qrraster.h"
#include "tests/support/logcapture.h"
#include "tests/support/qrdecoder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <qrencode.h>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Rows = std::vector<std::vector<unsigned char>>;

int symbolsFreed = 0;

class QrCode : public testing::Test
{
protected:
    BasicFrSettings settings;
    const BasicFrDriver driver{nullptr, u"qr"_s, &settings};
};

const QString begun = u"info: Генерируем qr-code"_s;
const QString made = u"info: qr-code сгенерирован"_s;
const QString failed = u"error: Не удалось сгенерировать QR код!"_s;

// How many bytes a code of each version holds at the highest level of error correction.
constexpr std::array<int, 40> capacities{7, 14, 24, 34, 44, 58, 64, 84, 98, 119, 137, 155, 177, 194, 220, 250,
    280, 310, 338, 382, 403, 439, 461, 511, 535, 593, 625, 658, 698, 742, 790, 842, 898, 958, 983, 1051, 1093,
    1139, 1219, 1273};

// Text with different bytes in different places.
QString textOf(int bytes)
{
    QString text;
    for (int i = 0; i < bytes; ++i)
        text += QChar(u'0' + i * 7 % 75);
    return text;
}

// The library's modules as rows of 0xFF and 0x00.
Rows modulesOf(const QByteArray& text)
{
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> symbol(
        QRcode_encodeString(text.constData(), 0, QR_ECLEVEL_H, QR_MODE_8, 1), &QRcode_free);
    Rows rows;
    if (!symbol)
        return rows;
    const auto width = static_cast<std::size_t>(symbol->width);
    const unsigned char* module = symbol->data;
    for (std::size_t row = 0; row < width; ++row) {
        rows.emplace_back();
        for (std::size_t column = 0; column < width; ++column)
            rows.back().push_back(*module++ % 2 == 1 ? 0xFF : 0x00);
    }
    return rows;
}

// Reads the matrix back from its picture with three pixels per module and a quiet zone of four modules.
QList<QByteArray> readBack(const Rows& rows)
{
    constexpr std::size_t scale = 3;
    constexpr std::size_t quiet = 4;
    const std::size_t side = (rows.size() + 2 * quiet) * scale;
    QByteArray grey(static_cast<qsizetype>(side * side), '\xFF');
    for (std::size_t y = quiet * scale; y < side - quiet * scale; ++y) {
        for (std::size_t x = quiet * scale; x < side - quiet * scale; ++x) {
            const unsigned char module = rows.at(y / scale - quiet).at(x / scale - quiet);
            grey[static_cast<qsizetype>(y * side + x)] = static_cast<char>(~module);
        }
    }
    return decodedQrCodes(grey, static_cast<unsigned int>(side), static_cast<unsigned int>(side));
}

TEST_F(QrCode, OfAnEmptyTextIsEmptyAndNotLogged)
{
    const LogCapture log;
    EXPECT_EQ(driver.generateQR(QString()), Rows());
    EXPECT_EQ(driver.generateQR(u""_s), Rows());
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(QrCode, OfEveryVersionHasTheModulesOfTheLibrary)
{
    for (std::size_t version = 1; version <= capacities.size(); ++version) {
        SCOPED_TRACE(version);
        const QString text = textOf(capacities[version - 1]);
        const Rows rows = driver.generateQR(text);
        ASSERT_EQ(rows.size(), 17 + 4 * version);
        EXPECT_EQ(rows, modulesOf(text.toLatin1()));
    }
}

TEST_F(QrCode, OfATextThatDoesNotFitIsEmptyWithAnError)
{
    const LogCapture log;
    EXPECT_EQ(driver.generateQR(textOf(1274)), Rows());
    EXPECT_EQ(driver.generateQR(QString(637, u'я')), Rows());
    EXPECT_EQ(log.lines(), (QStringList{begun, failed, begun, failed}));
}

TEST_F(QrCode, EndsBeforeANullCharacter)
{
    LogCapture log;
    EXPECT_EQ(driver.generateQR(u"12"_s + QChar() + u'3'), driver.generateQR(u"12"_s));
    EXPECT_EQ(log.take(), (QStringList{begun, made, begun, made}));
    EXPECT_EQ(driver.generateQR(QString(QChar())), Rows());
    EXPECT_EQ(log.take(), (QStringList{begun, failed}));
}

TEST_F(QrCode, NeverFreesTheSymbolOfTheLibraryOnPurpose)
{
    symbolsFreed = 0;
    EXPECT_FALSE(driver.generateQR(u"1"_s).empty());
    EXPECT_EQ(symbolsFreed, 0);
    EXPECT_FALSE(modulesOf("1").empty());
    EXPECT_EQ(symbolsFreed, 1);
}

TEST_F(QrCode, IsReadBackByAnotherLibrary)
{
    const QString receipt = u"t=20240305T1407&s=150.50&fn=9999078900005488&i=184&fp=3449555941&n=1 Чай "_s;
    const QList<QString> texts{
        u"Я"_s, u"Чек на 150 рублей №1"_s, receipt.repeated(3).left(200), receipt.repeated(14).left(1000)};
    QList<qsizetype> lengths;
    for (const QString& text : texts) {
        lengths << text.size();
        EXPECT_EQ(readBack(driver.generateQR(text)), QList<QByteArray>{text.toUtf8()});
    }
    EXPECT_EQ(lengths, (QList<qsizetype>{1, 20, 200, 1000}));
}

TEST_F(QrCode, IsPackedEightModulesPerByteEachRowByItself)
{
    const Rows rows{{1, 0, 0, 0, 0xFE, 0, 0, 0xFF, 1, 1}, {}, {1}};
    EXPECT_EQ(driver.convertBytes2Bits(rows, false), (Rows{{0x81, 0xC0}, {}, {0x80}}));
    EXPECT_EQ(driver.convertBytes2Bits(rows, true), (Rows{{0x81, 0x03}, {}, {0x01}}));
    EXPECT_EQ(driver.convertBytes2Bits({}, false), Rows());
}

TEST(ReversedByte, HasItsBitsInTheOppositeOrder)
{
    for (unsigned int byte = 0; byte < 256; ++byte) {
        unsigned int mirrored = 0;
        for (unsigned int bit = 0; bit < 8; ++bit)
            mirrored |= (byte >> bit & 1U) << (7 - bit);
        ASSERT_EQ(reverseBits(static_cast<unsigned char>(byte)), mirrored) << byte;
    }
}

} // namespace

// Found before the library's own, to count its calls.
extern "C" void QRcode_free(QRcode* symbol)
{
    ++symbolsFreed;
    reinterpret_cast<decltype(&QRcode_free)>(dlsym(RTLD_NEXT, "QRcode_free"))(symbol);
}
