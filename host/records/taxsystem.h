#pragma once

#include "host/export.h"

#include <QString>

namespace hw::fr::common {

/// Taxation systems, as single bits of tag 1055.
enum class TaxSystemType : int
{
    General = 1,
    SimplifiedIncome = 2,
    SimplifiedIncomeMinusExpense = 4,
    ImputedIncome = 8,
    Agricultural = 16,
    Patent = 32,
};

/// Texts about taxation systems.
class HOST_EXPORT TaxSystem
{
public:
    /// The system's name for people, in Russian; "unknown" in Russian for a value that is not exactly one
    /// known bit.
    [[nodiscard]] static QString getDescription(TaxSystemType type);
};

} // namespace hw::fr::common
