#include "atolonline/exceptions.h"

namespace atolonline {

Exception::Exception(const QString& text)
    : BasicException(text)
{
}

Exception::~Exception() = default;

TokenExpired::TokenExpired()
    : Exception(QStringLiteral("Срок действия токена истёк"))
{
}

TokenExpired::~TokenExpired() = default;

DocumentExists::DocumentExists()
    : Exception(QStringLiteral("Документ с переданным идентификатором уже существует"))
{
}

DocumentExists::~DocumentExists() = default;

DocumentInProgress::DocumentInProgress()
    : Exception(QStringLiteral("Документ еще не обработан"))
{
}

DocumentInProgress::~DocumentInProgress() = default;

} // namespace atolonline
