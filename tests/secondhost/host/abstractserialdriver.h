#pragma once

class AbstractSerialDriver
{
public:
    virtual ~AbstractSerialDriver() = default;
    virtual int getPortKind() = 0;
    virtual void setBaudRate(int baudRate) = 0;
};
