#pragma once

#include <QString>

namespace till {

/// What a taxpayer number may be.
enum class TaxpayerNumber
{
    Good,
    /// Not 10 or 12 digits.
    WrongLength,
    /// A digit is wrong, or two are exchanged.
    WrongCheckDigit,
};

[[nodiscard]] TaxpayerNumber judgeTaxpayerNumber(const QString& number);

} // namespace till
