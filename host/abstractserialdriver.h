#pragma once

#include "host/export.h"

/// The line to a device. The host creates it; drivers borrow it.
class HOST_EXPORT AbstractSerialDriver
{
public:
    virtual ~AbstractSerialDriver();

    /// Kind of the port; 3 and 4 are lines without a speed setting (network-like), any other is a serial
    /// line.
    [[nodiscard]] virtual int getPortKind() const = 0;
    /// Sets the speed of the line, in baud. Throws ComDriverException when the port refuses it.
    virtual void setBaudRate(int baudRate) = 0;
};
