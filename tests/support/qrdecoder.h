#pragma once

#include <QByteArray>
#include <QList>

/// The bytes of every QR code in a picture of 8-bit grey values, read by a decoder that shares no code with
/// whatever drew it. The picture has width * height bytes, row by row from the top.
[[nodiscard]] QList<QByteArray> decodedQrCodes(
    const QByteArray& grey, unsigned int width, unsigned int height);
