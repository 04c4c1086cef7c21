#include "atolonline/receiptcomposer.h"
#include "tests/support/qtprinters.h"
#include "till/receipts/receipt.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

// The same cases as golden_test.cpp, given to the composer itself: a difference here and none there, or the
// other way round, tells on which side of the service client a bug is.

const QDir folder(QStringLiteral(GOLDEN));

QJsonObject jsonOf(const QString& name)
{
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

QJsonObject composed(const frhost::Receipt& receipt)
{
    QMap<int, double> payments;
    for (const FrPayment& payment : receipt.payments)
        payments[payment.type] += payment.getSum();
    return {
        {QStringLiteral("items"), atolonline::createItems(receipt.positions)},
        {QStringLiteral("payments"), atolonline::createPayments(payments)},
        {QStringLiteral("total"), atolonline::getTotal(payments)},
    };
}

TEST(GoldenComposer, MakesTheKeptItemsPaymentsAndTotals)
{
    const QStringList inputs = folder.entryList({QStringLiteral("*.in.json")}, QDir::Files, QDir::Name);
    ASSERT_FALSE(inputs.isEmpty());
    for (const QString& input : inputs) {
        const QString name = input.chopped(8);
        QJsonObject kept =
            jsonOf(name + QStringLiteral(".out.json")).value(QStringLiteral("receipt")).toObject();
        kept.remove(QStringLiteral("client"));
        const QJsonObject company = kept.take(QStringLiteral("company")).toObject();
        const frhost::Receipt receipt = frhost::toReceipt(jsonOf(input));
        EXPECT_EQ(QJsonDocument(composed(receipt)).toJson(), QJsonDocument(kept).toJson())
            << name.toStdString();
        const int taxSystem = receipt.taxSystem();
        EXPECT_EQ(company.value(QStringLiteral("sno")).toString(),
            taxSystem == 0 ? QString() : atolonline::getSnoName(hw::fr::common::TaxSystemType(taxSystem)))
            << name.toStdString();
    }
}

} // namespace
