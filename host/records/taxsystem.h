#pragma once

#include "host/export.h"

#include <QString>

namespace hw::fr::common {

/// Taxation system as tag 1055 carries it: one bit set.
enum class TaxSystemType : int
{
    General = 1,
    SimplifiedIncome = 2,
    SimplifiedIncomeMinusExpense = 4,
    ImputedIncome = 8,
    Agricultural = 16,
    Patent = 32,
};

class HOST_EXPORT TaxSystem
{
public:
    /// A Russian text for people; a value that is no single known bit is named as unknown.
    [[nodiscard]] static QString getDescription(TaxSystemType type);
};

} // namespace hw::fr::common
