#pragma once

#include <QList>
#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

/// A device at the far end of a pseudo-terminal; a driver opens the near end as a serial port.
///
/// It answers each byte with ACK if the terminal is set to the device's own speed. At another speed it stays
/// silent, or sends a garbled byte.
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
    /// Removes the device, as when a cable is pulled; the line fails from now on.
    void unplug();

    /// The speed that the line is set to.
    [[nodiscard]] int lineSpeed() const;
    /// Each byte received so far, as "byte at speed".
    [[nodiscard]] QList<QString> heard() const;

private:
    void serve();
    void answer(char byte);

    const AtAnotherSpeed atAnotherSpeed;
    std::atomic<int> ownSpeed;
    int master = -1;
    int slave = -1;
    int stopEvent = -1;
    mutable std::mutex guard;
    QList<QString> received;
    std::thread server;
};
