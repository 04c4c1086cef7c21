#include "examples/serialdriver/sampledriver.h"

#include "host/exceptions.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char enquiry = 0x05;
constexpr char acknowledged = 0x06;
constexpr char bell = 0x07;

} // namespace

SampleDriver::SampleDriver(
    SerialLine* serialLine, BasicFrSettings* frSettings, std::chrono::milliseconds answerTime)
    : BasicFrDriver(serialLine, u"sample_%1"_s.arg(frSettings->getDeviceId()), frSettings)
    , line(serialLine)
    , time(answerTime)
{
    baudRates = {19200, 115200, 57600, 9600};
    deviceInfo.setModel(u"1"_s, u"Sample"_s);
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

// The handshake, which connect() calls at each speed that it tries.
void SampleDriver::setConnection()
{
    if (answerTo(enquiry) != QByteArray(1, acknowledged))
        throw FrNoConnectionException(u"ФР не отвечает"_s);
}

void SampleDriver::beep()
{
    if (answerTo(bell) != QByteArray(1, acknowledged))
        throw FrCommandException(u"ФР не выполнил команду"_s);
}

QByteArray SampleDriver::answerTo(char command)
{
    isPortReady();
    return line->exchange(QByteArray(1, command), time);
}
