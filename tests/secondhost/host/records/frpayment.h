#pragma once

struct FrPayment
{
    double getSum() const { return sum; }

    double sum = 0;
    int type = 0;
};
