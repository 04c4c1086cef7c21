#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>

namespace frhost {

/// Tells the service manager that has started the program how it is doing. Where there is none, nobody is
/// told and nothing fails. All but reportAlive() may be called from any thread.
class ServiceManager
{
public:
    /// Reads NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID.
    ServiceManager();

    /// The program has started.
    void reportReady() const;
    /// The program is about to end.
    void reportStopping() const;
    /// What it is doing, for people.
    void reportStatus(const QString& status) const;
    /// To be called often: passed on as often as the service manager's watchdog needs it.
    void reportAlive();

private:
    void tell(const QByteArray& message) const;

    QByteArray address;
    std::chrono::microseconds pause{0};
    std::chrono::steady_clock::time_point next;
};

} // namespace frhost
