#include "till/wire/exactvalue.h"

#include <cmath>

namespace till {

QString exactText(const QVariant& value)
{
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

std::optional<qint64> exactInteger(const QVariant& value, qint64 least, qint64 greatest)
{
    const std::optional<double> number = exactNumber(value);
    const bool isWithin = number && *number == std::trunc(*number) && *number >= static_cast<double>(least) &&
                          *number <= static_cast<double>(greatest);
    return isWithin ? std::optional(static_cast<qint64>(*number)) : std::nullopt;
}

std::optional<double> exactNumber(const QVariant& value)
{
    const bool isNumber = value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
    return isNumber ? std::optional(value.toDouble()) : std::nullopt;
}

} // namespace till
