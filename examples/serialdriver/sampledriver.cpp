#include "examples/serialdriver/sampledriver.h"

#include "host/exceptions.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char closeReceipt = 0x02;
constexpr char isLastReceipt = 0x03;
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

void SampleDriver::checkOpen(const FiscalDocument& document)
{
    isPortReady();
    id = document.getInternalIdentifier();
    if (id.contains(u';') || id.contains(u'\n'))
        throw FrCommandException(u"Недопустимый идентификатор чека"_s);
    kopecks = 0;
    lastFiscalInfo = {};
}

void SampleDriver::checkPay(const FrPayment& payment)
{
    BasicFrDriver::checkPay(payment);
    kopecks += std::llround(payment.getSum() * 100);
}

QJsonObject SampleDriver::checkClose(const FiscalDocument& /*document*/)
{
    const QByteArray answer = answerTo(closeReceipt, u"%1;%2"_s.arg(id, QString::number(kopecks)));
    if (answer.isEmpty())
        throw FrNoConnectionException(u"ФР не отвечает"_s);
    const QStringList parts = QString::fromUtf8(answer.sliced(1)).trimmed().split(u';');
    if (!answer.startsWith(acknowledged) || parts.size() != 4)
        throw FrCommandException(u"ФР не закрыл чек"_s);
    lastFiscalInfo.fnNumber = parts[0];
    lastFiscalInfo.fiscalDocumentNumber = parts[1].toInt();
    lastFiscalInfo.fiscalSign = parts[2];
    lastFiscalInfo.total = parts[3].toDouble() / 100;
    return {};
}

bool SampleDriver::isLastCheckWithNumber(const QString& checkNumber)
{
    return answerTo(isLastReceipt, checkNumber).startsWith(acknowledged);
}

QByteArray SampleDriver::answerTo(char command)
{
    isPortReady();
    return line->exchange(QByteArray(1, command), time);
}

QByteArray SampleDriver::answerTo(char command, const QString& text)
{
    isPortReady();
    return line->ask(command + text.toUtf8() + '\n', time);
}
