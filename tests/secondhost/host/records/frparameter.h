#pragma once

#include <QString>

struct FrParameter
{
    QString getValue() const { return {}; }
    int getFieldNum() const { return 3; }
    int getRowNum() const { return 2; }
    int getTableNum() const { return 1; }
};
