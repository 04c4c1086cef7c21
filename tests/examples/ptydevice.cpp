#include "tests/examples/ptydevice.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char startOfText = 0x02;
constexpr char endOfText = 0x03;
constexpr char acknowledged = 0x06;
constexpr char refused = 0x15;

int checked(int result, const char* call)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), call);
    return result;
}

int baudOf(speed_t speed)
{
    constexpr std::array<std::pair<speed_t, int>, 6> speeds{
        {{B4800, 4800}, {B9600, 9600}, {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}}};
    for (const auto& [code, baud] : speeds) {
        if (code == speed)
            return baud;
    }
    return 0;
}

} // namespace

PtyDevice::PtyDevice(int speed, AtAnotherSpeed behaviour)
    : atAnotherSpeed(behaviour)
    , ownSpeed(speed)
    , master(checked(posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt"))
{
    checked(grantpt(master), "grantpt");
    checked(unlockpt(master), "unlockpt");
    // Kept open, because the far end reports a hang-up while the near end is closed.
    slave = checked(open(ptsname(master), O_RDWR | O_NOCTTY), "open");
    stopEvent = checked(eventfd(0, 0), "eventfd");
    server = std::thread([this] { serve(); });
}

PtyDevice::~PtyDevice()
{
    unplug();
    close(stopEvent);
}

void PtyDevice::unplug()
{
    if (!server.joinable())
        return;
    const std::uint64_t one = 1;
    static_cast<void>(!write(stopEvent, &one, sizeof one));
    server.join();
    close(slave);
    close(master);
}

QString PtyDevice::path() const
{
    return QString::fromLocal8Bit(ptsname(master));
}

int PtyDevice::lineSpeed() const
{
    termios settings{};
    checked(tcgetattr(slave, &settings), "tcgetattr");
    return baudOf(cfgetospeed(&settings));
}

QList<QString> PtyDevice::heard() const
{
    const std::lock_guard lock(guard);
    return received;
}

void PtyDevice::serve()
{
    std::array<pollfd, 2> watched{{{master, POLLIN, 0}, {stopEvent, POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) > 0 && watched[1].revents == 0) {
        char byte = 0;
        if (read(master, &byte, 1) == 1)
            answer(byte);
    }
}

void PtyDevice::answerLine(const QByteArray& text)
{
    {
        const std::lock_guard lock(guard);
        received << QString::fromUtf8(text.sliced(1));
    }
    QByteArray reply(1, refused);
    if (text.startsWith(startOfText)) {
        const QList<QByteArray> parts = text.sliced(1).split(';');
        lastId = parts.first();
        reply = acknowledged + QByteArray("9999078900006364;") + QByteArray::number(++documents) +
                ";3449555941;" + parts.last();
        if (losesAnswers)
            return;
    } else if (text.sliced(1) == lastId) {
        reply[0] = acknowledged;
    }
    reply += '\n';
    static_cast<void>(!write(master, reply.constData(), static_cast<std::size_t>(reply.size())));
}

void PtyDevice::answer(char byte)
{
    if (!line.isEmpty() || byte == startOfText || byte == endOfText) {
        if (byte != '\n')
            line += byte;
        else
            answerLine(std::exchange(line, {}));
        return;
    }
    const int speed = lineSpeed();
    {
        const std::lock_guard lock(guard);
        received << u"%1 at %2"_s.arg(int{byte}).arg(speed);
    }
    const char garbled = '\xFF';
    if (speed == ownSpeed)
        static_cast<void>(!write(master, &acknowledged, 1));
    else if (atAnotherSpeed == AtAnotherSpeed::Garbled)
        static_cast<void>(!write(master, &garbled, 1));
}
