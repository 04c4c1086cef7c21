#include "hostcli/service/servicemanager.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <tuple>
#include <unistd.h>

namespace frhost {

ServiceManager::ServiceManager()
    : address(qgetenv("NOTIFY_SOCKET"))
{
    bool isForAnother = false;
    const qint64 process = qgetenv("WATCHDOG_PID").toLongLong(&isForAnother);
    isForAnother = isForAnother && process != getpid();
    // Twice as often as needed, as it asks for.
    if (!isForAnother)
        pause = std::chrono::microseconds(std::max<qint64>(0, qgetenv("WATCHDOG_USEC").toLongLong() / 2));
}

void ServiceManager::reportReady() const
{
    tell("READY=1");
}

void ServiceManager::reportStopping() const
{
    tell("STOPPING=1");
}

// A line break would begin another assignment.
void ServiceManager::reportStatus(const QString& status) const
{
    tell("STATUS=" + status.simplified().toUtf8());
}

void ServiceManager::reportAlive()
{
    const auto now = std::chrono::steady_clock::now();
    if (pause.count() == 0 || now < next)
        return;
    next = now + pause;
    tell("WATCHDOG=1");
}

void ServiceManager::tell(const QByteArray& message) const
{
    sockaddr_un to = {};
    to.sun_family = AF_UNIX;
    if (address.isEmpty() || address.size() >= static_cast<qsizetype>(sizeof to.sun_path))
        return;
    const auto size = static_cast<std::size_t>(address.size());
    std::memcpy(to.sun_path, address.constData(), size);
    // The name of an abstract socket begins with a zero.
    if (to.sun_path[0] == '@')
        to.sun_path[0] = '\0';
    const int sender = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (sender == -1)
        return;
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size);
    // That nobody listens, or is slow to, is not a fault.
    std::ignore = ::sendto(sender, message.constData(), static_cast<std::size_t>(message.size()),
        MSG_NOSIGNAL | MSG_DONTWAIT, reinterpret_cast<const sockaddr*>(&to), length);
    ::close(sender);
}

} // namespace frhost
