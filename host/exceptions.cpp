#include "host/exceptions.h"

BasicException::BasicException(const QString& text)
    : std::runtime_error(text.toStdString())
    , message(text)
{
}

// Destructors stand here so that the type information of each class lives in this library alone and a
// plugin's exception is caught by class in the host program.
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
