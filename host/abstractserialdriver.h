#pragma once

#include "host/export.h"

/// The line to a device. It belongs to the host; drivers borrow it.
class HOST_EXPORT AbstractSerialDriver
{
public:
    virtual ~AbstractSerialDriver();

    /// Kind of the port. Kinds 3 and 4 have no speed (a network connection, for example); any other is a
    /// serial line.
    virtual int getPortKind() const = 0;
    /// Sets the speed of the line, in baud. Throws ComDriverException when the port refuses it.
    virtual void setBaudRate(int baudRate) = 0;
};
