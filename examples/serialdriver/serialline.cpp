#include "examples/serialdriver/serialline.h"

#include "host/exceptions.h"

SerialLine::SerialLine(const QString& deviceFile)
{
    port.setPortName(deviceFile);
}

void SerialLine::open()
{
    if (!port.open(QIODevice::ReadWrite))
        throw ComDriverException(port.errorString());
}

void SerialLine::close()
{
    port.close();
}

void SerialLine::setBaudRate(int baudRate)
{
    if (!port.setBaudRate(baudRate))
        throw ComDriverException(port.errorString());
}

QByteArray SerialLine::exchange(const QByteArray& request, std::chrono::milliseconds time)
{
    const int ms = static_cast<int>(time.count());
    port.clear();
    port.clearError();
    port.write(request);
    if (port.waitForBytesWritten(ms))
        port.waitForReadyRead(ms);
    check();
    return port.readAll();
}

QByteArray SerialLine::ask(const QByteArray& request, std::chrono::milliseconds time)
{
    QByteArray answer = exchange(request, time);
    while (!answer.isEmpty() && !answer.endsWith('\n')) {
        if (!port.waitForReadyRead(static_cast<int>(time.count())))
            break;
        answer += port.readAll();
    }
    check();
    return answer;
}

void SerialLine::check() const
{
    if (port.error() != QSerialPort::NoError && port.error() != QSerialPort::TimeoutError)
        throw ComDriverException(port.errorString());
}
