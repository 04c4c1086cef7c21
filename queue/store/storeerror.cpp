#include "queue/store/storeerror.h"

#include "till/text.h"

using till::Text;

namespace queue {

StoreError::StoreError(const QString& file, const QString& reason)
    : Error(till::Problem::Setup, Text::tr("%1: the queue cannot be used: %2.").arg(file, reason))
{
}

} // namespace queue
