#pragma once

#include "host/records/fdrequisite.h"

enum class ExciseMarkType : int;

namespace FrUtils {

inline FdRequisite createNomenclatureCodeRequisite(const QString& markingCode, ExciseMarkType)
{
    return FdRequisite(1162, markingCode.toLatin1());
}

} // namespace FrUtils
