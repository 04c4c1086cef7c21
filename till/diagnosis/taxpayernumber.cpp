#include "till/diagnosis/taxpayernumber.h"

#include <algorithm>
#include <array>

namespace till {

namespace {

// The weights of the digits before the check digit at `place` are the last `place` of these.
constexpr std::array weights{3, 7, 2, 4, 10, 3, 5, 9, 4, 6, 8};

bool isCheckDigit(const QString& number, qsizetype place)
{
    int sum = 0;
    for (qsizetype i = 0; i < place; ++i)
        sum += number.at(i).digitValue() *
               weights.at(weights.size() - static_cast<std::size_t>(place) + static_cast<std::size_t>(i));
    return sum % 11 % 10 == number.at(place).digitValue();
}

} // namespace

TaxpayerNumber judgeTaxpayerNumber(const QString& number)
{
    const bool hasDigits = std::all_of(
        number.begin(), number.end(), [](QChar c) { return c.unicode() >= u'0' && c.unicode() <= u'9'; });
    if (!hasDigits || (number.size() != 10 && number.size() != 12))
        return TaxpayerNumber::WrongLength;
    const bool isGood =
        number.size() == 10 ? isCheckDigit(number, 9) : isCheckDigit(number, 10) && isCheckDigit(number, 11);
    return isGood ? TaxpayerNumber::Good : TaxpayerNumber::WrongCheckDigit;
}

} // namespace till
