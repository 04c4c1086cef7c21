#pragma once

/// One payment of a receipt.
class FrPayment
{
public:
    FrPayment() = default;
    FrPayment(int paymentType, double paidSum)
        : type(paymentType)
        , sum(paidSum)
    {
    }

    /// Amount paid, in roubles.
    [[nodiscard]] double getSum() const { return sum; }
    void setSum(double value) { sum = value; }

    /// Payment type, in the numbering that the register's service uses.
    int type = 0;

private:
    double sum = 0;
};
