#pragma once

#include <QByteArray>
#include <QList>

/// The bytes of every QR code in a picture of 8-bit grey values, width * height of them in rows from the top.
/// The decoder shares no code with what draws the codes.
[[nodiscard]] QList<QByteArray> decodedQrCodes(
    const QByteArray& grey, unsigned int width, unsigned int height);
