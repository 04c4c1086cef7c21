#include "frbase/basicfrdriver.h"

#include "frbase/qrraster.h"
#include "host/log/log4qt.h"

#include <QByteArray>
#include <QString>

#include <qrencode.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace {

using Row = std::vector<unsigned char>;
using Rows = std::vector<Row>;

// The symbol is deliberately never freed: a few kilobytes for each code.
const QRcode* newQrSymbol(const QByteArray& text)
{
    return QRcode_encodeString(text.constData(), 0, QR_ECLEVEL_H, QR_MODE_8, 1);
}

constexpr bool isDark(unsigned char module)
{
    return (module & 1U) != 0;
}

Row packed(const Row& modules)
{
    Row bytes;
    unsigned int byte = 0;
    int position = 7;
    for (const unsigned char module : modules) {
        if (isDark(module))
            byte |= 1U << position;
        if (position == 0) {
            bytes.push_back(static_cast<unsigned char>(byte));
            byte = 0;
            position = 7;
        } else {
            --position;
        }
    }
    if (position != 7)
        bytes.push_back(static_cast<unsigned char>(byte));
    return bytes;
}

} // namespace

unsigned char reverseBits(unsigned char byte)
{
    unsigned int bits = byte;
    bits = (bits & 0x0FU) << 4 | (bits & 0xF0U) >> 4;
    bits = (bits & 0x33U) << 2 | (bits & 0xCCU) >> 2;
    bits = (bits & 0x55U) << 1 | (bits & 0xAAU) >> 1;
    return static_cast<unsigned char>(bits);
}

// === For drivers on this base: QR codes ===

std::vector<std::vector<unsigned char>> BasicFrDriver::convertBytes2Bits(
    const std::vector<std::vector<unsigned char>>& rows, bool reverse) const
{
    Rows result;
    for (const Row& row : rows) {
        Row bytes = packed(row);
        if (reverse) {
            for (unsigned char& byte : bytes)
                byte = reverseBits(byte);
        }
        result.push_back(std::move(bytes));
    }
    return result;
}

std::vector<std::vector<unsigned char>> BasicFrDriver::generateQR(const QString& text) const
{
    if (text.isEmpty())
        return {};
    logger->info("Генерируем qr-code");
    const QRcode* symbol = newQrSymbol(text.toLocal8Bit());
    if (!symbol) {
        logger->error("Не удалось сгенерировать QR код!");
        return {};
    }
    const auto width = static_cast<std::size_t>(symbol->width);
    Rows rows(width, Row(width, 0x00));
    for (std::size_t i = 0; i < width * width; ++i) {
        if (isDark(symbol->data[i]))
            rows[i / width][i % width] = 0xFF;
    }
    logger->info("qr-code сгенерирован");
    return rows;
}
