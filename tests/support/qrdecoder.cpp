#include "tests/support/qrdecoder.h"

#include <zbar.h>

QList<QByteArray> decodedQrCodes(const QByteArray& grey, unsigned int width, unsigned int height)
{
    zbar::ImageScanner scanner;
    scanner.set_config(zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 0);
    scanner.set_config(zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_ENABLE, 1);
    // The bytes as they are, or the decoder guesses at their encoding.
    scanner.set_config(zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1);

    zbar::Image image(width, height, "Y800", grey.constData(), static_cast<unsigned long>(grey.size()));
    scanner.scan(image);
    QList<QByteArray> codes;
    for (auto symbol = image.symbol_begin(); symbol != image.symbol_end(); ++symbol)
        codes << QByteArray::fromStdString(symbol->get_data());
    return codes;
}
