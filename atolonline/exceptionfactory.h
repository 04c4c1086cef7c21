#pragma once

#include <QString>

namespace atolonline {

/// What each error code of the service (protocol v4) means to the host.
class ExceptionFactory
{
public:
    /// Throws the exception of the code; a code without a message of its own throws
    /// FrWorkWithServiceException with the service's text. Returns for code -1 only, which stands for an
    /// error object without a code.
    static void throwException(int code, const QString& text);
};

} // namespace atolonline
