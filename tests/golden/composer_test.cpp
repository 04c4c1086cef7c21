#include "atolonline/receiptcomposer.h"
#include "tests/support/qtprinters.h"
#include "till/receipts/receipt.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// The cases of golden_test.cpp, composed without frhost: when only one of the two tests fails, that tells on
// which side of the service client the bug is.

const QDir folder(QStringLiteral(GOLDEN));

QJsonObject jsonOf(const QString& name)
{
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

QJsonObject composed(const till::Receipt& receipt)
{
    QMap<int, double> payments;
    for (const FrPayment& payment : receipt.payments)
        payments[payment.type] += payment.getSum();
    return {
        {u"items"_s, atolonline::createItems(receipt.positions)},
        {u"payments"_s, atolonline::createPayments(payments)},
        {u"total"_s, atolonline::getTotal(payments)},
    };
}

TEST(GoldenComposer, MakesTheExpectedItemsPaymentsAndTotals)
{
    const QStringList inputs = folder.entryList({u"*.in.json"_s}, QDir::Files, QDir::Name);
    ASSERT_FALSE(inputs.isEmpty());
    for (const QString& input : inputs) {
        const QString name = input.chopped(8);
        QJsonObject expected = jsonOf(name + u".out.json"_s).value(u"receipt"_s).toObject();
        expected.remove(u"client"_s);
        const QJsonObject company = expected.take(u"company"_s).toObject();
        const till::Receipt receipt = till::toReceipt(jsonOf(input));
        EXPECT_EQ(QJsonDocument(composed(receipt)).toJson(), QJsonDocument(expected).toJson())
            << name.toStdString();
        const int taxSystem = receipt.taxSystem().value_or(0);
        EXPECT_EQ(company.value(u"sno"_s).toString(),
            taxSystem == 0 ? QString() : atolonline::getSnoName(hw::fr::common::TaxSystemType(taxSystem)))
            << name.toStdString();
    }
}

} // namespace
