#pragma once

#include <QString>

namespace hw::fr::common {

enum class TaxSystemType
{
};

struct TaxSystem
{
    static QString getDescription(TaxSystemType type) { return QString::number(static_cast<int>(type)); }
};

} // namespace hw::fr::common
