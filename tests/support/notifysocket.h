#pragma once

#include <QByteArrayList>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// The socket of a service manager, which the environment names as long as the object lives.
class NotifySocket
{
public:
    explicit NotifySocket(const QByteArray& name)
        : socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
        sockaddr_un at = {};
        at.sun_family = AF_UNIX;
        const auto size = static_cast<std::size_t>(name.size());
        std::memcpy(at.sun_path, name.constData(), size);
        if (name.startsWith('@'))
            at.sun_path[0] = '\0';
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size);
        EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&at), length), 0);
        qputenv("NOTIFY_SOCKET", name);
    }
    ~NotifySocket()
    {
        for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"})
            qunsetenv(name);
        ::close(socket);
    }
    Q_DISABLE_COPY_MOVE(NotifySocket)

    /// What came since the last call.
    [[nodiscard]] QByteArrayList heard() const
    {
        QByteArrayList messages;
        char buffer[200];
        for (ssize_t size = 0; (size = ::recv(socket, buffer, sizeof buffer, 0)) >= 0;)
            messages << QByteArray(buffer, size);
        return messages;
    }

private:
    int socket;
};
