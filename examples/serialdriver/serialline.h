#pragma once

#include "host/abstractserialdriver.h"

#include <QByteArray>
#include <QSerialPort>
#include <QString>

#include <chrono>

/// The line to a device over a serial port. Throws ComDriverException when the port fails.
class SerialLine : public AbstractSerialDriver
{
public:
    /// The device file, such as "/dev/ttyUSB0".
    explicit SerialLine(const QString& deviceFile);

    void open();
    void close();

    [[nodiscard]] int getPortKind() const override { return 1; }
    void setBaudRate(int baudRate) override;

    /// Discards earlier input, sends the request and returns the first bytes that come back; nothing when
    /// none come in time. Blocks for at most twice `time`.
    [[nodiscard]] QByteArray exchange(const QByteArray& request, std::chrono::milliseconds time);
    /// The same, up to the end of a line.
    [[nodiscard]] QByteArray ask(const QByteArray& request, std::chrono::milliseconds time);

private:
    void check() const;

    QSerialPort port;
};
