#pragma once

#include <QString>

namespace atolonline {

/// Maps the error codes of the service (protocol v4) to the exceptions of the host.
class ExceptionFactory
{
public:
    /// Throws the exception for the code; for a code without an exception of its own,
    /// FrWorkWithServiceException with the service's text. Returns only for code -1, which means an error
    /// object without a code.
    static void throwException(int code, const QString& text);
};

} // namespace atolonline
