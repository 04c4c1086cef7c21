#include "host/exceptions.h"

BasicException::BasicException(const QString& text)
    : std::runtime_error(text.toStdString())
    , message(text)
{
}

// The destructors are defined here, so that the type information of each class is in this library alone and
// the host program can catch a plugin's exception by its class.
BasicException::~BasicException() = default;
DriverException::~DriverException() = default;
FrDriverException::~FrDriverException() = default;
FrCommandException::~FrCommandException() = default;
FrWorkWithServiceException::~FrWorkWithServiceException() = default;
FrNoConnectionException::~FrNoConnectionException() = default;
FrCommandNotSupportException::~FrCommandNotSupportException() = default;
ComDriverException::~ComDriverException() = default;

tr::Tr BasicException::tr() const
{
    return message;
}
