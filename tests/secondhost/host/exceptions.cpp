#include "host/exceptions.h"

#include <QString>

tr::Tr::Tr(const QString& russianText)
    : texts{QString(), QString(), russianText}
{
}

tr::Tr::~Tr() = default;

QString tr::Tr::ru() const
{
    return texts[2];
}

BasicException::BasicException(const QString& text)
    : std::runtime_error("")
    , message(text)
{
}

BasicException::~BasicException() = default;

tr::Tr BasicException::tr() const
{
    return message;
}

DriverException::DriverException(const QString& text)
    : BasicException(text)
{
}

DriverException::~DriverException() = default;

FrDriverException::FrDriverException(const QString& text)
    : DriverException(text)
{
}

FrDriverException::~FrDriverException() = default;

FrCommandException::FrCommandException(const QString& text)
    : FrDriverException(text)
{
}

FrCommandException::~FrCommandException() = default;

FrWorkWithServiceException::FrWorkWithServiceException(const QString& text)
    : FrCommandException(text)
{
}

FrWorkWithServiceException::~FrWorkWithServiceException() = default;

FrNoConnectionException::FrNoConnectionException(const QString& text)
    : FrCommandException(text)
{
}

FrNoConnectionException::~FrNoConnectionException() = default;

FrCommandNotSupportException::FrCommandNotSupportException(const QString& text)
    : FrDriverException(text)
{
}

FrCommandNotSupportException::~FrCommandNotSupportException() = default;

ComDriverException::ComDriverException(const QString& text)
    : DriverException(text)
{
}

ComDriverException::~ComDriverException() = default;
