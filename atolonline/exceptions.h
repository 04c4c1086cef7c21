#pragma once

#include "host/exceptions.h"

/// What the service answers that the driver acts on itself. The host sees them as BasicException.
namespace atolonline {

class Exception : public BasicException
{
public:
    explicit Exception(const QString& message);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;
};

/// The token has expired; a new one is to be requested and the call repeated. "Срок действия токена истёк".
class TokenExpired : public Exception
{
public:
    TokenExpired();
    TokenExpired(const TokenExpired&) = default;
    TokenExpired& operator=(const TokenExpired&) = default;
    ~TokenExpired() override;
};

/// A document with this external id was sent before. "Документ с переданным идентификатором уже существует".
class DocumentExists : public Exception
{
public:
    DocumentExists();
    DocumentExists(const DocumentExists&) = default;
    DocumentExists& operator=(const DocumentExists&) = default;
    ~DocumentExists() override;
};

/// The document is queued and not registered yet. "Документ еще не обработан".
class DocumentInProgress : public Exception
{
public:
    DocumentInProgress();
    DocumentInProgress(const DocumentInProgress&) = default;
    DocumentInProgress& operator=(const DocumentInProgress&) = default;
    ~DocumentInProgress() override;
};

} // namespace atolonline
