#include "atolonline/exceptions.h"

using namespace Qt::Literals::StringLiterals;

namespace atolonline {

Exception::Exception(const QString& text)
    : BasicException(text)
{
}

Exception::~Exception() = default;

TokenExpired::TokenExpired()
    : Exception(u"Срок действия токена истёк"_s)
{
}

TokenExpired::~TokenExpired() = default;

DocumentExists::DocumentExists()
    : Exception(u"Документ с переданным идентификатором уже существует"_s)
{
}

DocumentExists::~DocumentExists() = default;

DocumentInProgress::DocumentInProgress()
    : Exception(u"Документ еще не обработан"_s)
{
}

DocumentInProgress::~DocumentInProgress() = default;

} // namespace atolonline
