#include "examples/serialdriver/sampledriver.h"

#include "host/exceptions.h"

namespace {

constexpr char enquiry = 0x05;
constexpr char acknowledged = 0x06;
constexpr char bell = 0x07;

} // namespace

SampleDriver::SampleDriver(
    SerialLine* serialLine, BasicFrSettings* frSettings, std::chrono::milliseconds answerTime)
    : BasicFrDriver(serialLine, QStringLiteral("sample_%1").arg(frSettings->getDeviceId()), frSettings)
    , line(serialLine)
    , time(answerTime)
{
    baudRates = {19200, 115200, 57600, 9600};
    deviceInfo.setModel(QStringLiteral("1"), QStringLiteral("Sample"));
}

void SampleDriver::portOpen()
{
    line->open();
    portClosed = false;
}

void SampleDriver::portClose()
{
    line->close();
    portClosed = true;
}

// The handshake: connect() calls it at each speed that it tries.
void SampleDriver::setConnection()
{
    if (answerTo(enquiry) != QByteArray(1, acknowledged))
        throw FrNoConnectionException(QStringLiteral("ФР не отвечает"));
}

void SampleDriver::beep()
{
    if (answerTo(bell) != QByteArray(1, acknowledged))
        throw FrCommandException(QStringLiteral("ФР не выполнил команду"));
}

QByteArray SampleDriver::answerTo(char command)
{
    isPortReady();
    return line->exchange(QByteArray(1, command), time);
}
