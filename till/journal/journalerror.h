#pragma once

#include "till/error.h"

namespace till {

/// The journal cannot be used. The message names the file and the cause.
class JournalError : public Error
{
public:
    JournalError(const QString& file, const QString& reason);
};

} // namespace till
