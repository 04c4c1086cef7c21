#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

/// A device at the far end of a pseudo-terminal; a driver opens the near end as a serial port.
///
/// It answers each byte with ACK if the terminal is set to the device's own speed. At another speed it stays
/// silent, or sends a garbled byte. A line of text that begins with STX is a receipt, which it registers; one
/// that begins with ETX asks for the last one.
class PtyDevice
{
public:
    enum class AtAnotherSpeed
    {
        Silent,
        Garbled
    };

    PtyDevice(int speed, AtAnotherSpeed behaviour);
    ~PtyDevice();
    Q_DISABLE_COPY_MOVE(PtyDevice)

    /// The device file for the driver.
    [[nodiscard]] QString path() const;
    void changeSpeed(int speed) { ownSpeed = speed; }
    /// From now on registers receipts without an answer, or answers again.
    void loseAnswers(bool isLost) { losesAnswers = isLost; }
    /// Removes the device, as when a cable is pulled; the line fails from now on.
    void unplug();

    /// The speed that the line is set to.
    [[nodiscard]] int lineSpeed() const;
    /// Each byte received so far, as "byte at speed"; each line of text as the text.
    [[nodiscard]] QList<QString> heard() const;

private:
    void serve();
    void answer(char byte);
    void answerLine(const QByteArray& text);

    const AtAnotherSpeed atAnotherSpeed;
    std::atomic<int> ownSpeed;
    std::atomic<bool> losesAnswers = false;
    // Of the server's thread.
    QByteArray line;
    QByteArray lastId;
    int documents = 0;
    int master = -1;
    int slave = -1;
    int stopEvent = -1;
    mutable std::mutex guard;
    QList<QString> received;
    std::thread server;
};
