#pragma once

#include <QString>

/// One cell of a register's parameter tables.
class FrParameter
{
public:
    FrParameter() = default;
    FrParameter(int table, int row, int field, const QString& newValue)
        : tableNum(table)
        , rowNum(row)
        , fieldNum(field)
        , value(newValue)
    {
    }

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
