#include "queue/store/storeerror.h"

#include "till/text.h"

using till::Text;

namespace queue {

StoreError::StoreError(const QString& file, const QString& reason, till::Fault usedFault)
    : Error(till::Problem::Setup, Text::tr("%1: the queue cannot be used: %2.").arg(file, reason))
    , fault(usedFault)
{
}

} // namespace queue
