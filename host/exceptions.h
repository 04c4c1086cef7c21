#pragma once

#include "host/export.h"
#include "host/tr.h"

#include <QString>

#include <stdexcept>

/// Root of the host's exceptions. Thrown by value, caught by reference; what() is the Russian text in UTF-8.
class HOST_EXPORT BasicException : public std::runtime_error
{
public:
    BasicException(const QString& text);
    BasicException(const BasicException&);
    BasicException& operator=(const BasicException&);
    ~BasicException() override;

    /// The message for people.
    [[nodiscard]] tr::Tr tr() const;

private:
    ::tr::Tr message;
};

/// A driver has failed; base of all driver exceptions.
class HOST_EXPORT DriverException : public BasicException
{
public:
    DriverException(const QString& text);
    DriverException(const DriverException&);
    DriverException& operator=(const DriverException&);
    ~DriverException() override;
};

/// A fiscal-register driver has failed.
class HOST_EXPORT FrDriverException : public DriverException
{
public:
    FrDriverException(const QString& text);
    FrDriverException(const FrDriverException&);
    FrDriverException& operator=(const FrDriverException&);
    ~FrDriverException() override;
};

/// A command of the fiscal register has failed.
class HOST_EXPORT FrCommandException : public FrDriverException
{
public:
    FrCommandException(const QString& text);
    FrCommandException(const FrCommandException&);
    FrCommandException& operator=(const FrCommandException&);
    ~FrCommandException() override;
};

/// The exchange with a service has failed, or the service has rejected the request.
class HOST_EXPORT FrWorkWithServiceException : public FrCommandException
{
public:
    FrWorkWithServiceException(const QString& text);
    FrWorkWithServiceException(const FrWorkWithServiceException&);
    FrWorkWithServiceException& operator=(const FrWorkWithServiceException&);
    ~FrWorkWithServiceException() override;
};

/// The fiscal register, or the service that it uses, cannot be reached.
class HOST_EXPORT FrNoConnectionException : public FrCommandException
{
public:
    FrNoConnectionException(const QString& text);
    FrNoConnectionException(const FrNoConnectionException&);
    FrNoConnectionException& operator=(const FrNoConnectionException&);
    ~FrNoConnectionException() override;
};

/// The fiscal register does not support the command.
class HOST_EXPORT FrCommandNotSupportException : public FrDriverException
{
public:
    FrCommandNotSupportException(const QString& text);
    FrCommandNotSupportException(const FrCommandNotSupportException&);
    FrCommandNotSupportException& operator=(const FrCommandNotSupportException&);
    ~FrCommandNotSupportException() override;
};

/// The serial port itself has failed. A device that does not answer is an FrNoConnectionException.
class HOST_EXPORT ComDriverException : public DriverException
{
public:
    ComDriverException(const QString& text);
    ComDriverException(const ComDriverException&);
    ComDriverException& operator=(const ComDriverException&);
    ~ComDriverException() override;
};
