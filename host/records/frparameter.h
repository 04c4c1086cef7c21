#pragma once

#include "host/export.h"

#include <QString>

/// One cell of a register's parameter tables.
class HOST_EXPORT FrParameter
{
public:
    FrParameter();
    FrParameter(int table, int row, int field, const QString& newValue);
    FrParameter(const FrParameter&);
    FrParameter(FrParameter&&) noexcept;
    FrParameter& operator=(const FrParameter&);
    FrParameter& operator=(FrParameter&&) noexcept;
    ~FrParameter();

    [[nodiscard]] int getTableNum() const { return tableNum; }
    [[nodiscard]] int getRowNum() const { return rowNum; }
    [[nodiscard]] int getFieldNum() const { return fieldNum; }
    [[nodiscard]] QString getValue() const { return value; }

private:
    int tableNum = 0;
    int rowNum = 0;
    int fieldNum = 0;
    QString value;
};
