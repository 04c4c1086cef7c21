#include "host/exceptions.h"

// Whatever makes, copies or destroys an exception is defined here: plugins do not compile it in, and as the
// type information of each class is in this library alone, the host program can catch a plugin's exception by
// its class.

BasicException::BasicException(const QString& text)
    : std::runtime_error(text.toStdString())
    , message(text)
{
}

BasicException::BasicException(const BasicException&) = default;
BasicException& BasicException::operator=(const BasicException&) = default;
BasicException::~BasicException() = default;

tr::Tr BasicException::tr() const
{
    return message;
}

DriverException::DriverException(const QString& text)
    : BasicException(text)
{
}

DriverException::DriverException(const DriverException&) = default;
DriverException& DriverException::operator=(const DriverException&) = default;
DriverException::~DriverException() = default;

FrDriverException::FrDriverException(const QString& text)
    : DriverException(text)
{
}

FrDriverException::FrDriverException(const FrDriverException&) = default;
FrDriverException& FrDriverException::operator=(const FrDriverException&) = default;
FrDriverException::~FrDriverException() = default;

FrCommandException::FrCommandException(const QString& text)
    : FrDriverException(text)
{
}

FrCommandException::FrCommandException(const FrCommandException&) = default;
FrCommandException& FrCommandException::operator=(const FrCommandException&) = default;
FrCommandException::~FrCommandException() = default;

FrWorkWithServiceException::FrWorkWithServiceException(const QString& text)
    : FrCommandException(text)
{
}

FrWorkWithServiceException::FrWorkWithServiceException(const FrWorkWithServiceException&) = default;
FrWorkWithServiceException& FrWorkWithServiceException::operator=(
    const FrWorkWithServiceException&) = default;
FrWorkWithServiceException::~FrWorkWithServiceException() = default;

FrNoConnectionException::FrNoConnectionException(const QString& text)
    : FrCommandException(text)
{
}

FrNoConnectionException::FrNoConnectionException(const FrNoConnectionException&) = default;
FrNoConnectionException& FrNoConnectionException::operator=(const FrNoConnectionException&) = default;
FrNoConnectionException::~FrNoConnectionException() = default;

FrCommandNotSupportException::FrCommandNotSupportException(const QString& text)
    : FrDriverException(text)
{
}

FrCommandNotSupportException::FrCommandNotSupportException(const FrCommandNotSupportException&) = default;
FrCommandNotSupportException& FrCommandNotSupportException::operator=(
    const FrCommandNotSupportException&) = default;
FrCommandNotSupportException::~FrCommandNotSupportException() = default;

ComDriverException::ComDriverException(const QString& text)
    : DriverException(text)
{
}

ComDriverException::ComDriverException(const ComDriverException&) = default;
ComDriverException& ComDriverException::operator=(const ComDriverException&) = default;
ComDriverException::~ComDriverException() = default;
