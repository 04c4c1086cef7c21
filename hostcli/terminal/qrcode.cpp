#include "hostcli/terminal/qrcode.h"

#include <QUrl>

#include <qrencode.h>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

constexpr int quietZone = 4;

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

QString qrFileName(const QString& id)
{
    QString name;
    for (const QChar c : id) {
        const bool isPlain =
            c.isLetterOrNumber() || c == u' ' || c == u'_' || c == u'-' || (c == u'.' && !name.isEmpty());
        name += isPlain ? QString(c) : QString::fromLatin1(QString(c).toUtf8().toPercentEncoding({}, "."));
    }
    return name + u".png"_s;
}

} // namespace frhost
