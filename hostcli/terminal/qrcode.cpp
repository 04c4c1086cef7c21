#include "hostcli/terminal/qrcode.h"

#include <QByteArrayView>
#include <QCryptographicHash>
#include <QStringList>

#include <qrencode.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

constexpr int quietZone = 4;
constexpr qsizetype digestSize = 16;
const QString extension = u".png"_s;

struct FreeSymbol
{
    void operator()(QRcode* symbol) const { QRcode_free(symbol); }
};

QImage drawn(const QRcode& symbol)
{
    const int size = symbol.width + 2 * quietZone;
    QImage image(size, size, QImage::Format_Mono);
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    image.fill(0);
    for (int y = 0; y < symbol.width; ++y) {
        for (int x = 0; x < symbol.width; ++x)
            image.setPixel(x + quietZone, y + quietZone, symbol.data[y * symbol.width + x] & 1U);
    }
    return image;
}

// The bytes of a character in UTF-8. Half of a surrogate pair, which UTF-8 does not have, gets the bytes that
// it would have.
QString percentEncoded(char32_t point)
{
    QByteArray bytes;
    if (QChar::isSurrogate(point)) {
        for (const char32_t byte :
            {0xE0U | point >> 12U, 0x80U | (point >> 6U & 0x3FU), 0x80U | (point & 0x3FU)})
            bytes += static_cast<char>(byte);
    } else {
        bytes = QString::fromUcs4(&point, 1).toUtf8();
    }
    QString text;
    for (const char byte : bytes)
        text += u'%' + QString::fromLatin1(QByteArray(1, byte).toHex().toUpper());
    return text;
}

// The characters of an id as they appear in the name of a file.
QStringList namePieces(const QString& id)
{
    QStringList pieces;
    for (qsizetype i = 0; i < id.size(); ++i) {
        const bool isPair = id.at(i).isHighSurrogate() && i + 1 < id.size() && id.at(i + 1).isLowSurrogate();
        const char32_t point = isPair ? QChar::surrogateToUcs4(id.at(i), id.at(i + 1)) : id.at(i).unicode();
        i += isPair ? 1 : 0;
        const bool isPlain = point <= 0xFFFF && !QChar::isSurrogate(point) &&
                             (QChar::isLetterOrNumber(point) || point == U' ' || point == U'_' ||
                                 point == U'-' || (point == U'.' && !pieces.isEmpty()));
        pieces << (isPlain ? QString(QChar(static_cast<char16_t>(point))) : percentEncoded(point));
    }
    return pieces;
}

} // namespace

QrCode::QrCode(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const std::unique_ptr<QRcode, FreeSymbol> symbol(
        QRcode_encodeString8bit(bytes.constData(), 0, QR_ECLEVEL_M));
    if (symbol)
        modules = drawn(*symbol);
}

QString QrCode::halfBlocks() const
{
    // Light modules are drawn, in bright white on black: a reader wants dark on light.
    constexpr char16_t blocks[2][2] = {{u'█', u'▀'}, {u'▄', u' '}};
    const auto isDark = [&](int x, int y) { return y < modules.height() && modules.pixelIndex(x, y) != 0; };
    QString text;
    for (int y = 0; y < modules.height(); y += 2) {
        text += u"  \x1b[97;40m"_s;
        for (int x = 0; x < modules.width(); ++x)
            text += blocks[isDark(x, y) ? 1 : 0][isDark(x, y + 1) ? 1 : 0];
        text += u"\x1b[0m\n"_s;
    }
    return text;
}

QImage QrCode::picture(int pixels) const
{
    return modules.scaled(modules.size() * pixels);
}

QString qrFileName(const QString& id, int longest)
{
    const QStringList pieces = namePieces(id);
    const QString name = pieces.join(QString()) + extension;
    if (name.toUtf8().size() <= longest)
        return name;
    const QByteArrayView bytes(reinterpret_cast<const char*>(id.utf16()), id.size() * 2);
    const QByteArray digest =
        QCryptographicHash::hash(bytes.toByteArray(), QCryptographicHash::Sha256).first(digestSize);
    const QString end = u'~' + QString::fromLatin1(digest.toHex()) + extension;
    QString begin;
    qsizetype left = longest - end.size();
    for (const QString& piece : pieces) {
        left -= piece.toUtf8().size();
        if (left < 0)
            break;
        begin += piece;
    }
    return begin + end;
}

} // namespace frhost
