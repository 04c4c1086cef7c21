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

    /// Sends the request and returns the first bytes that come back; none when nothing does in time. What
    /// came before is dropped. Blocks for at most twice the time.
    [[nodiscard]] QByteArray exchange(const QByteArray& request, std::chrono::milliseconds time);

private:
    QSerialPort port;
};
