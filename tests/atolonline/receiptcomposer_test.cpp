#include "atolonline/receiptcomposer.h"
#include "tests/support/qtprinters.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

using hw::fr::common::TaxSystemType;

QByteArray text(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray text(const QJsonArray& array)
{
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

FrPosition line(double possum = 0, double discsum = 0)
{
    FrPosition position;
    position.setName(u"Товар"_s);
    position.setPossum(possum);
    position.setDiscsum(discsum);
    return position;
}

QJsonObject item(const FrPosition& position)
{
    return atolonline::createItems({position}).first().toObject();
}

FdRequisite supplier(const FdRequisite::Map& members)
{
    return FdRequisite(EFrDriver::SupplierData, members);
}

TEST(Items, AreAnEmptyArrayWithoutPositions)
{
    EXPECT_EQ(text(atolonline::createItems({})), "[]");
}

TEST(Items, KeepTheOrderOfThePositions)
{
    FrPosition second = line();
    second.setName(u"Второй"_s);
    const QJsonArray items = atolonline::createItems({line(), second, line()});
    QStringList names;
    for (const auto& each : items)
        names << each.toObject().value(u"name"_s).toString();
    EXPECT_EQ(names, (QStringList{u"Товар"_s, u"Второй"_s, u"Товар"_s}));
}

TEST(Items, HaveExactlyTheseKeys)
{
    FrPosition position = line(160);
    position.setPriceWithDisc(80.123456);
    position.setCount(1.9996);
    position.setTaxCode(1);
    EXPECT_EQ(text(item(position)),
        R"({"name":"Товар","payment_method":"full_payment","payment_object":"commodity","price":80.123456,)"
        R"("quantity":1.9996,"sum":160,"vat":{"type":"vat10"}})");
}

TEST(Items, RoundTheSumHalfAwayFromZeroToKopecks)
{
    const struct
    {
        double possum;
        double discsum;
        const char* sum;
    } rows[] = {
        {100, 0.005, "100"},
        {0, 0, "0"},
        {12.345, 0, "12.35"},
        {0, 12.345, "-12.35"},
        {0, 0.125, "-0.13"},
        {1.005, 0, "1.01"},
        {2.675, 0, "2.68"},
        {0.1 + 0.2, 0, "0.3"},
        {0.004, 0, "0"},
        {0, 0.001, "0"},
        {0, 0.004, "0"},
        {42949672.95, 0, "42949672.95"},
        {160, 9.99, "150.01"},
        {92233720368547760.0, 0, "92233720368547760"},
        {1e17, 0, "1e+17"},
        {0, 1e17, "-1e+17"},
        {1e300, 0, "1e+300"},
        {std::numeric_limits<double>::quiet_NaN(), 0, "null"},
    };
    for (const auto& row : rows) {
        const QJsonValue sum = item(line(row.possum, row.discsum)).value(u"sum"_s);
        EXPECT_EQ(text(QJsonArray{sum}), QByteArray("[") + row.sum + "]")
            << row.possum << " - " << row.discsum;
    }
}

TEST(Items, KeepSumsOfWholeKopecks)
{
    for (int kopecks = -200000; kopecks <= 200000; kopecks += 7) {
        const double amount = kopecks / 100.0;
        ASSERT_EQ(item(line(amount)).value(u"sum"_s).toDouble(), amount);
    }
}

TEST(Vat, NamesEveryTaxCodeAndDefaultsToTwentyPercent)
{
    const std::pair<int, const char*> rows[] = {{0, "vat0"}, {1, "vat10"}, {2, "vat20"}, {3, "vat110"},
        {4, "vat120"}, {5, "none"}, {6, "vat20"}, {-1, "vat20"}, {100, "vat20"}};
    for (const auto& [code, name] : rows)
        EXPECT_EQ(text(atolonline::getVat(code)), QByteArray("{\"type\":\"") + name + "\"}") << code;
}

TEST(PaymentMethod, NamesEveryValueAndDefaultsToFullPayment)
{
    const char* names[] = {"full_payment", "full_prepayment", "prepayment", "advance", "full_payment",
        "partial_payment", "credit", "credit_payment", "full_payment", "full_payment"};
    for (int value = 0; value < 10; ++value)
        EXPECT_EQ(atolonline::getPaymentMethodName(EFrDriver::PaymentMethod(value)),
            QString::fromLatin1(names[value]));
    EXPECT_EQ(atolonline::getPaymentMethodName(EFrDriver::PaymentMethod(-1)), u"full_payment"_s);
}

TEST(PaymentObject, NamesEveryValueAndDefaultsToCommodity)
{
    const char* names[] = {"commodity", "commodity", "excise", "job", "service", "gambling_bet",
        "gambling_prize", "lottery", "lottery_prize", "intellectual_activity", "payment", "agent_commission",
        "composite", "another", "commodity", "commodity"};
    for (int value = 0; value < 16; ++value)
        EXPECT_EQ(atolonline::getPaymentObjectName(EFrDriver::PaymentObject(value)),
            QString::fromLatin1(names[value]));
    EXPECT_EQ(atolonline::getPaymentObjectName(EFrDriver::PaymentObject(-1)), u"commodity"_s);
}

TEST(NomenclatureCode, IsUpperCaseHexBytesSeparatedBySpaces)
{
    FrPosition position = line();
    position.setExciseMark(u"mark"_s);
    position.setMarkingCode(u"4606203090785"_s);
    EXPECT_EQ(item(position).value(u"nomenclature_code"_s).toString(), u"45 0D 04 30 77 19 57 61"_s);
}

// The code has the form of an EAN-13, so that only the type makes it a fur sign.
TEST(NomenclatureCode, IsMadeForTheTypeOfTheMark)
{
    FrPosition position = line();
    position.setExciseMark(u"mark"_s);
    position.setMarkingCode(u"4606203090785"_s);
    position.setExciseMarkType(ExciseMarkType::Fur);
    EXPECT_EQ(item(position).value(u"nomenclature_code"_s).toString(),
        u"52 46 34 36 30 36 32 30 33 30 39 30 37 38 35"_s);
}

TEST(NomenclatureCode, IsOmittedWithoutAnExciseMarkWhateverTheMarkingCode)
{
    FrPosition position = line();
    position.setMarkingCode(u"4606203090785"_s);
    EXPECT_FALSE(item(position).contains(u"nomenclature_code"_s));
}

TEST(NomenclatureCode, IsEmptyTextWhenTheMarkingCodeYieldsNoBytes)
{
    FrPosition position = line();
    position.setExciseMark(u"mark"_s);
    EXPECT_EQ(item(position).value(u"nomenclature_code"_s), QJsonValue(u""_s));
}

TEST(Supplier, IsOmittedFromALineNotMarkedAsASuppliers)
{
    FrPosition position = line();
    position.setRequisite(FdRequisite(EFrDriver::SupplierInn, u"7700000000"_s));
    EXPECT_FALSE(item(position).contains(u"supplier_info"_s));
    EXPECT_FALSE(item(position).contains(u"agent_info"_s));
}

TEST(Supplier, HasPhoneAndNameOfTheCompositeAndTaxpayerNumberOfTheLine)
{
    FrPosition position = line();
    position.setSupplierRequisites(true);
    position.setRequisite(FdRequisite(EFrDriver::AgentSign, 32));
    position.setRequisite(FdRequisite(EFrDriver::SupplierInn, u"7700000000"_s));
    position.setRequisite(supplier({
        {EFrDriver::SupplierPhone, FdRequisite(EFrDriver::SupplierPhone, u"+79990000000"_s)},
        {EFrDriver::SupplierName, FdRequisite(EFrDriver::SupplierName, u"ООО Поставщик"_s)},
    }));
    const QJsonObject sent = item(position);
    EXPECT_EQ(text(sent.value(u"supplier_info"_s).toObject()),
        R"({"inn":"7700000000","name":"ООО Поставщик","phones":["+79990000000"]})");
    EXPECT_EQ(text(sent.value(u"agent_info"_s).toObject()), R"({"type":"commission_agent"})");
}

TEST(Supplier, HasAllKeysEvenWithoutData)
{
    FrPosition position = line();
    position.setSupplierRequisites(true);
    const QJsonObject sent = item(position);
    EXPECT_EQ(text(sent.value(u"supplier_info"_s).toObject()), R"({"inn":"","name":"","phones":[""]})");
    EXPECT_EQ(text(sent.value(u"agent_info"_s).toObject()), R"({"type":""})");
}

TEST(Supplier, IgnoresATaxpayerNumberInTheComposite)
{
    const FdRequisite::Map requisites{{EFrDriver::SupplierData,
        supplier({{EFrDriver::SupplierInn, FdRequisite(EFrDriver::SupplierInn, u"7700000000"_s)}})}};
    EXPECT_EQ(text(atolonline::getSupplierInfo(requisites)), R"({"inn":"","name":"","phones":[""]})");
}

TEST(Agent, NamesExactlyTheSevenTypes)
{
    const std::map<int, QString> names{{1, u"bank_paying_agent"_s}, {2, u"bank_paying_subagent"_s},
        {4, u"paying_agent"_s}, {8, u"paying_subagent"_s}, {16, u"attorney"_s}, {32, u"commission_agent"_s},
        {64, u"another"_s}};
    for (int type = -1; type <= 130; ++type) {
        const auto found = names.find(type);
        const QString name = atolonline::getAgentName(type);
        EXPECT_EQ(name, found == names.end() ? QString() : found->second) << type;
        EXPECT_EQ(name.isNull(), found == names.end()) << type;
    }
}

TEST(Payments, AreSortedByTypeAndAddUpToTheTotal)
{
    const QMap<int, double> payments{{1, 50.0}, {0, 100.0}};
    EXPECT_EQ(text(atolonline::createPayments(payments)), R"([{"sum":100,"type":0},{"sum":50,"type":1}])");
    EXPECT_EQ(atolonline::getTotal(payments), 150.0);
}

TEST(Payments, AreNotRounded)
{
    const QMap<int, double> payments{{0, 0.1}, {1, 0.2}};
    EXPECT_EQ(text(QJsonArray{atolonline::getTotal(payments)}), "[0.30000000000000004]");
    EXPECT_EQ(text(atolonline::createPayments({{2, 10.123456}})), R"([{"sum":10.123456,"type":2}])");
}

TEST(Payments, OfAnEmptyReceiptAreOneOfZero)
{
    EXPECT_EQ(text(atolonline::createPayments({})), R"([{"sum":0,"type":0}])");
    EXPECT_EQ(atolonline::getTotal({}), 0.0);
}

TEST(TaxationSystem, NamesTheFiveSpecialSystemsAndDefaultsToTheGeneral)
{
    const std::map<int, QString> names{{2, u"usn_income"_s}, {4, u"usn_income_outcome"_s}, {8, u"envd"_s},
        {16, u"esn"_s}, {32, u"patent"_s}};
    for (int type = -1; type <= 64; ++type) {
        const auto found = names.find(type);
        EXPECT_EQ(
            atolonline::getSnoName(TaxSystemType(type)), found == names.end() ? u"osn"_s : found->second)
            << type;
    }
}

} // namespace
