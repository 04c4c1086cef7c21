#include "host/records/frparameter.h"

FrParameter::FrParameter() = default;
FrParameter::FrParameter(const FrParameter&) = default;
FrParameter::FrParameter(FrParameter&&) noexcept = default;
FrParameter& FrParameter::operator=(const FrParameter&) = default;
FrParameter& FrParameter::operator=(FrParameter&&) noexcept = default;
FrParameter::~FrParameter() = default;

FrParameter::FrParameter(int table, int row, int field, const QString& newValue)
    : tableNum(table)
    , rowNum(row)
    , fieldNum(field)
    , value(newValue)
{
}
