#pragma once

#include "host/tr.h"

#include <stdexcept>

class QString;

// Thrown and caught, never assigned.

class BasicException : public std::runtime_error
{
public:
    BasicException(const QString& text);
    ~BasicException() override;

    ::tr::Tr tr() const;

private:
    const ::tr::Tr message;
};

class DriverException : public BasicException
{
public:
    DriverException(const QString& text);
    ~DriverException() override;
};

class FrDriverException : public DriverException
{
public:
    FrDriverException(const QString& text);
    ~FrDriverException() override;
};

class FrCommandException : public FrDriverException
{
public:
    FrCommandException(const QString& text);
    ~FrCommandException() override;
};

class FrWorkWithServiceException : public FrCommandException
{
public:
    FrWorkWithServiceException(const QString& text);
    ~FrWorkWithServiceException() override;
};

class FrNoConnectionException : public FrCommandException
{
public:
    FrNoConnectionException(const QString& text);
    ~FrNoConnectionException() override;
};

class FrCommandNotSupportException : public FrDriverException
{
public:
    FrCommandNotSupportException(const QString& text);
    ~FrCommandNotSupportException() override;
};

class ComDriverException : public DriverException
{
public:
    ComDriverException(const QString& text);
    ~ComDriverException() override;
};
