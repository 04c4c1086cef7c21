#pragma once

#include "examples/serialdriver/serialline.h"
#include "frbase/basicfrdriver.h"

#include <QByteArray>

#include <chrono>

/// A driver for a fictitious register on a serial line. The register answers every command of one byte with
/// one byte: ACK if it has executed the command, anything else if it has not.
///
/// This is all that a driver on BasicFrDriver needs: the port, the handshake, the speeds, and the operations
/// that the device supports (this one can beep).
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

private:
    [[nodiscard]] QByteArray answerTo(char command);

    SerialLine* line;
    std::chrono::milliseconds time;
};
