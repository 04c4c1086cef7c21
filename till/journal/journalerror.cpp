#include "till/journal/journalerror.h"

#include "till/text.h"

namespace till {

JournalError::JournalError(const QString& file, const QString& reason)
    : Error(Problem::Setup, Text::tr("%1: the journal cannot be used: %2.").arg(file, reason))
{
}

} // namespace till
