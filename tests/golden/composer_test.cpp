#include "atolonline/receiptcomposer.h"
#include "tests/support/qtprinters.h"
#include "till/receipts/receipt.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace Qt::Literals::StringLiterals;

namespace {

// The cases of golden_test.cpp, composed without frhost: when only one of the two tests fails, that tells on
// which side of the service client the bug is.

struct Case
{
    QString name;
    QJsonObject input;
    QJsonObject receipt; // as it is kept
};

QJsonObject jsonOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

QList<Case> cases()
{
    const QDir folder(QStringLiteral(GOLDEN));
    QList<Case> all;
    for (const QString& input : folder.entryList({u"*.in.json"_s}, QDir::Files, QDir::Name)) {
        const QString name = input.chopped(8);
        all.append({name, jsonOf(folder.filePath(input)),
            jsonOf(folder.filePath(name + u".out.json"_s)).value(u"receipt"_s).toObject()});
    }
    EXPECT_FALSE(all.isEmpty());
    return all;
}

QMap<int, double> paymentsOf(const QJsonObject& input)
{
    QMap<int, double> payments;
    for (const QJsonValue& payment : input.value(u"payments"_s).toArray())
        payments[payment[u"type"].toInt()] += payment[u"sum"].toDouble();
    return payments;
}

int taxSystemOf(const QJsonObject& input)
{
    int system = 0;
    for (const QJsonValue& requisite : input.value(u"requisites"_s).toArray()) {
        if (requisite[u"tag"].toInt() == 1055)
            system = requisite[u"value"].toInt();
    }
    return system;
}

// Half a kopeck is rounded away from zero. Nothing in the cases is so near to half a kopeck, and not meant to
// be one, that a billionth of a kopeck matters.
double inKopecks(long double amount)
{
    return static_cast<double>(std::round(amount * 100 + std::copysign(1e-9L, amount)) / 100) + 0.0;
}

TEST(GoldenComposer, MakesTheExpectedItemsPaymentsAndTotals)
{
    for (const Case& each : cases()) {
        const QMap<int, double> payments = paymentsOf(each.input);
        const QJsonObject composed{
            {u"items"_s, atolonline::createItems(till::toReceipt(each.input).positions)},
            {u"payments"_s, atolonline::createPayments(payments)},
            {u"total"_s, atolonline::getTotal(payments)},
        };
        QJsonObject kept = each.receipt;
        kept.remove(u"client"_s);
        const QJsonValue sno = kept.take(u"company"_s)[u"sno"];
        EXPECT_EQ(QJsonDocument(composed).toJson(), QJsonDocument(kept).toJson()) << each.name.toStdString();
        if (!sno.isUndefined()) {
            const auto type = hw::fr::common::TaxSystemType(taxSystemOf(each.input));
            EXPECT_EQ(atolonline::getSnoName(type), sno.toString()) << each.name.toStdString();
        }
    }
}

// The kept receipts were written by the program; these rules say without it what they must hold.
TEST(GoldenData, HoldsTheSumsAndTheTaxationSystemThatFollowFromTheReceipt)
{
    const std::map<int, QString> names{{1, u"osn"_s}, {2, u"usn_income"_s}, {3, u"osn"_s},
        {4, u"usn_income_outcome"_s}, {8, u"envd"_s}, {16, u"esn"_s}, {32, u"patent"_s}};
    for (const Case& each : cases()) {
        const QJsonArray positions = each.input.value(u"positions"_s).toArray();
        const QJsonArray items = each.receipt.value(u"items"_s).toArray();
        ASSERT_EQ(items.size(), positions.size()) << each.name.toStdString();
        for (qsizetype i = 0; i < items.size(); ++i) {
            const long double sum = positions[i][u"sum"].toDouble();
            EXPECT_EQ(items[i][u"sum"].toDouble(), inKopecks(sum - positions[i][u"discount"].toDouble()))
                << each.name.toStdString() << ", position " << i;
        }
        double paid = 0;
        for (const QJsonValue& payment : each.input.value(u"payments"_s).toArray())
            paid += payment[u"sum"].toDouble();
        EXPECT_NEAR(each.receipt.value(u"total"_s).toDouble(), paid, 1e-6) << each.name.toStdString();
        const int system = taxSystemOf(each.input);
        const QJsonValue sno = each.receipt.value(u"company"_s)[u"sno"];
        EXPECT_EQ(sno.isUndefined(), system == 0) << each.name.toStdString();
        EXPECT_EQ(sno.toString(), system == 0 ? QString() : names.at(system)) << each.name.toStdString();
    }
}

} // namespace
