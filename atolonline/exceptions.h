#pragma once

#include "host/exceptions.h"

#include <QString>

/// Errors of the service that the driver handles itself. The host sees them as BasicException.
namespace atolonline {

/// Base of the errors that the driver handles itself.
class Exception : public BasicException
{
public:
    explicit Exception(const QString& text);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;
};

/// The token has expired; the driver requests a new one and repeats the call. "Срок действия токена истёк".
class TokenExpired : public Exception
{
public:
    TokenExpired();
    TokenExpired(const TokenExpired&) = default;
    TokenExpired& operator=(const TokenExpired&) = default;
    ~TokenExpired() override;
};

/// A document with this external id has been sent before. "Документ с переданным идентификатором уже
/// существует".
class DocumentExists : public Exception
{
public:
    DocumentExists();
    DocumentExists(const DocumentExists&) = default;
    DocumentExists& operator=(const DocumentExists&) = default;
    ~DocumentExists() override;
};

/// The document is queued but not registered yet. "Документ еще не обработан".
class DocumentInProgress : public Exception
{
public:
    DocumentInProgress();
    DocumentInProgress(const DocumentInProgress&) = default;
    DocumentInProgress& operator=(const DocumentInProgress&) = default;
    ~DocumentInProgress() override;
};

} // namespace atolonline
