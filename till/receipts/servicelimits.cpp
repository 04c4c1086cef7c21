#include "till/receipts/servicelimits.h"

#include "till/receipts/receipt.h"
#include "till/text.h"

#include <QJsonArray>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr qsizetype longestName = 128;
constexpr qsizetype longestId = 128;
constexpr qsizetype longestContact = 64;
constexpr qsizetype mostLines = 100;
constexpr qsizetype mostPayments = 10;
constexpr int greatestPaymentType = 9;
constexpr double greatestAmount = 42949672.95;
constexpr double greatestQuantity = 99999.999;
// By which the payments may differ from the lines.
constexpr double greatestDifference = 0.99;
constexpr double kopeck = 0.01;
constexpr double thousandth = 0.001;

bool isMultipleOf(double step, double value)
{
    const double steps = value / step;
    return std::abs(steps - std::round(steps)) < 1e-4;
}

// Collects what is wrong with one receipt.
class Limits
{
public:
    explicit Limits(const QJsonObject& checked)
        : receipt(checked)
    {
    }

    std::vector<ReceiptProblem> check()
    {
        text(u"/id"_s, receipt.value("id"_L1).toString(), longestId);
        checkContact();
        const QJsonArray positions = receipt.value("positions"_L1).toArray();
        count(u"/positions"_s, positions.size(), mostLines);
        for (qsizetype i = 0; i < positions.size(); ++i)
            checkPosition(u"/positions/%1"_s.arg(i), positions.at(i).toObject());
        const QJsonArray payments = receipt.value("payments"_L1).toArray();
        count(u"/payments"_s, payments.size(), mostPayments);
        for (qsizetype i = 0; i < payments.size(); ++i)
            checkPayment(u"/payments/%1"_s.arg(i), payments.at(i).toObject());
        if (std::abs(paid - sold) > greatestDifference + kopeck / 2)
            add(u"/payments"_s,
                Text::tr("the payments are %1 and the lines %2; the service accepts a difference of "
                         "at most 0.99")
                    .arg(roubles(paid), roubles(sold)));
        return problems;
    }

private:
    void add(const QString& pointer, const QString& rule) { problems.push_back({0, pointer, rule}); }

    void text(const QString& pointer, const QString& value, qsizetype longest)
    {
        if (value.isEmpty())
            add(pointer, Text::tr("the service does not accept an empty text"));
        if (value.size() > longest)
            add(pointer, Text::tr("the service accepts at most %1 characters").arg(longest));
    }

    void count(const QString& pointer, qsizetype number, qsizetype most)
    {
        if (number < 1 || number > most)
            add(pointer, Text::tr("the service accepts 1 to %1").arg(most));
    }

    void amount(const QString& pointer, double value)
    {
        if (value < 0 || value > greatestAmount + kopeck / 2)
            add(pointer, Text::tr("the service accepts 0 to %1").arg(roubles(greatestAmount)));
        else if (!isMultipleOf(kopeck, value))
            add(pointer, Text::tr("the service accepts two decimals"));
    }

    void checkContact()
    {
        const QJsonArray requisites = receipt.value("requisites"_L1).toArray();
        for (qsizetype i = 0; i < requisites.size(); ++i) {
            if (requisites.at(i)[u"tag"].toInt() == buyerContact)
                text(u"/requisites/%1/value"_s.arg(i), requisites.at(i)[u"value"].toVariant().toString(),
                    longestContact);
        }
    }

    void checkPosition(const QString& pointer, const QJsonObject& position)
    {
        text(pointer + u"/name"_s, position.value("name"_L1).toString(), longestName);
        const double price = position.value("price"_L1).toDouble();
        const double quantity = position.value("quantity"_L1).toDouble();
        const double sum = position.value("sum"_L1).toDouble() - position.value("discount"_L1).toDouble();
        amount(pointer + u"/price"_s, price);
        amount(pointer + u"/sum"_s, sum);
        if (quantity <= 0 || quantity > greatestQuantity + thousandth / 2)
            add(pointer + u"/quantity"_s, Text::tr("the service accepts more than 0 and at most 99999.999"));
        else if (!isMultipleOf(thousandth, quantity))
            add(pointer + u"/quantity"_s, Text::tr("the service accepts three decimals"));
        if (std::abs(price * quantity - sum) > kopeck)
            add(pointer + u"/sum"_s, Text::tr("less the discount it is %1, but price times quantity is %2")
                                         .arg(roubles(sum), roubles(price * quantity)));
        sold += sum;
    }

    void checkPayment(const QString& pointer, const QJsonObject& payment)
    {
        const double sum = payment.value("sum"_L1).toDouble();
        amount(pointer + u"/sum"_s, sum);
        const int type = payment.value("type"_L1).toInt();
        if (type < 0 || type > greatestPaymentType)
            add(pointer + u"/type"_s, Text::tr("the service accepts 0 to %1").arg(greatestPaymentType));
        paid += sum;
    }

    const QJsonObject& receipt;
    std::vector<ReceiptProblem> problems;
    double sold = 0;
    double paid = 0;
};

} // namespace

std::vector<ReceiptProblem> beyondServiceLimits(const QJsonObject& receipt)
{
    return Limits(receipt).check();
}

} // namespace till
