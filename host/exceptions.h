#pragma once

#include "host/export.h"
#include "host/tr.h"

#include <QString>

#include <stdexcept>

/// Root of the host's exceptions. Thrown by value, caught by reference; what() is the Russian text in UTF-8.
class HOST_EXPORT BasicException : public std::runtime_error
{
public:
    explicit BasicException(const QString& text);
    BasicException(const BasicException&) = default;
    BasicException& operator=(const BasicException&) = default;
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
    using BasicException::BasicException;
    DriverException(const DriverException&) = default;
    DriverException& operator=(const DriverException&) = default;
    ~DriverException() override;
};

/// A fiscal-register driver has failed.
class HOST_EXPORT FrDriverException : public DriverException
{
public:
    using DriverException::DriverException;
    FrDriverException(const FrDriverException&) = default;
    FrDriverException& operator=(const FrDriverException&) = default;
    ~FrDriverException() override;
};

/// A command of the fiscal register has failed.
class HOST_EXPORT FrCommandException : public FrDriverException
{
public:
    using FrDriverException::FrDriverException;
    FrCommandException(const FrCommandException&) = default;
    FrCommandException& operator=(const FrCommandException&) = default;
    ~FrCommandException() override;
};

/// The exchange with a service has failed, or the service has rejected the request.
class HOST_EXPORT FrWorkWithServiceException : public FrCommandException
{
public:
    using FrCommandException::FrCommandException;
    FrWorkWithServiceException(const FrWorkWithServiceException&) = default;
    FrWorkWithServiceException& operator=(const FrWorkWithServiceException&) = default;
    ~FrWorkWithServiceException() override;
};

/// The fiscal register, or the service behind it, cannot be reached.
class HOST_EXPORT FrNoConnectionException : public FrCommandException
{
public:
    using FrCommandException::FrCommandException;
    FrNoConnectionException(const FrNoConnectionException&) = default;
    FrNoConnectionException& operator=(const FrNoConnectionException&) = default;
    ~FrNoConnectionException() override;
};

/// The fiscal register does not support the command.
class HOST_EXPORT FrCommandNotSupportException : public FrDriverException
{
public:
    using FrDriverException::FrDriverException;
    FrCommandNotSupportException(const FrCommandNotSupportException&) = default;
    FrCommandNotSupportException& operator=(const FrCommandNotSupportException&) = default;
    ~FrCommandNotSupportException() override;
};

/// The serial port itself has failed. A device that does not answer is an FrNoConnectionException.
class HOST_EXPORT ComDriverException : public DriverException
{
public:
    using DriverException::DriverException;
    ComDriverException(const ComDriverException&) = default;
    ComDriverException& operator=(const ComDriverException&) = default;
    ~ComDriverException() override;
};
