#pragma once

#include "examples/serialdriver/serialline.h"
#include "frbase/basicfrdriver.h"

#include <QByteArray>

#include <chrono>

/// A driver for a fictitious register on a serial line. The register answers every command of one byte with
/// one byte: ACK if it has executed the command, anything else if it has not. Two commands are lines of text,
/// and so are their answers:
///
/// | Command | Answer |
/// |---|---|
/// | STX id;kopecks | ACK storage;document;sign;kopecks: the receipt is registered |
/// | ETX id | ACK: the last receipt is the one with this id |
///
/// This is all that a driver on BasicFrDriver needs: the port, the handshake, the speeds, and the operations
/// that the device supports (this one can beep and register receipts).
class SampleDriver : public BasicFrDriver
{
public:
    /// The line and the settings are borrowed and must outlive the driver. answerTime is how long the
    /// register may take to answer a command.
    SampleDriver(SerialLine* serialLine, BasicFrSettings* frSettings, std::chrono::milliseconds answerTime);

    void portOpen() override;
    void portClose() override;
    void setConnection() override;
    void beep() override;
    void checkOpen(const FiscalDocument& document) override;
    void checkPay(const FrPayment& payment) override;
    /// Registers the receipt; the result is in getFiscalInfo(). Throws FrNoConnectionException when the
    /// answer was lost: then it may be registered.
    QJsonObject checkClose(const FiscalDocument& document) override;
    bool isLastCheckWithNumber(const QString& checkNumber) override;

private:
    [[nodiscard]] QByteArray answerTo(char command);
    [[nodiscard]] QByteArray answerTo(char command, const QString& text);

    SerialLine* line;
    std::chrono::milliseconds time;
    QString id;
    qint64 kopecks = 0;
};
