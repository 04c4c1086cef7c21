#pragma once

#include "host/exceptions.h"

#include <QString>

/// Errors of the service that the driver handles itself. The host sees them as BasicException.
namespace atolonline {

/// Base of the errors that the driver handles itself.
class Exception : public BasicException
{
public:
    Exception(const QString& text);
    ~Exception() override;
};

/// The token has expired; the driver requests a new one and repeats the call. "Срок действия токена истёк".
class TokenExpired : public Exception
{
public:
    TokenExpired();
    ~TokenExpired() override;
};

/// A document with this external id has been sent before. "Документ с переданным идентификатором уже
/// существует".
class DocumentExists : public Exception
{
public:
    DocumentExists();
    ~DocumentExists() override;
};

/// The document is queued but not registered yet. "Документ еще не обработан".
class DocumentInProgress : public Exception
{
public:
    DocumentInProgress();
    ~DocumentInProgress() override;
};

} // namespace atolonline
