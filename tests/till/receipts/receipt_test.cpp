#include "tests/support/qtprinters.h"
#include "till/receipts/receipt.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// Without the schema: the conversion passes every code on.
Receipt receipt(const QByteArray& text)
{
    const QJsonDocument json = QJsonDocument::fromJson(text);
    EXPECT_TRUE(json.isObject()) << text.constData();
    return toReceipt(json.object());
}

TEST(Receipt, HoldsEveryKeyOfTheFile)
{
    const Receipt full = receipt(R"({"id":"till-7","documentType":4,
        "requisites":[{"tag":1008,"value":"buyer@example.com"},{"tag":1055,"value":16}],
        "positions":[{"name":"Молоко","price":80.5,"quantity":2.5,"sum":201.25,"discount":1.25,"taxCode":-1,
            "paymentMethod":1,"paymentObject":99,"exciseMark":"e","markingCode":"m","exciseMarkType":2,
            "hasSupplierRequisites":false,
            "requisites":[{"tag":1222,"value":32},
                {"tag":1224,"members":[{"tag":1171,"value":"+7"},{"tag":1225,"value":"ООО"}]}]}],
        "payments":[{"type":1,"sum":200},{"type":0,"sum":0.5}]})");
    EXPECT_EQ(full.document.getInternalIdentifier(), u"till-7"_s);
    EXPECT_EQ(full.document.getDocumentType(), 4);
    ASSERT_EQ(full.requisites.size(), 2);
    EXPECT_EQ(full.requisites[0].getTag(), 1008);
    EXPECT_EQ(full.requisites[0].getSourceData().toString(), u"buyer@example.com"_s);
    EXPECT_EQ(full.requisites[1].getSourceData(), QVariant(16));
    EXPECT_EQ(full.taxSystem(), 16);
    ASSERT_EQ(full.positions.size(), 1);
    const FrPosition& line = full.positions[0];
    EXPECT_EQ(line.getName(), u"Молоко"_s);
    EXPECT_EQ(line.getPriceWithDisc(), 80.5);
    EXPECT_EQ(line.getCount(), 2.5);
    EXPECT_EQ(line.getPossum(), 201.25);
    EXPECT_EQ(line.getDiscsum(), 1.25);
    EXPECT_EQ(line.getTaxCode(), -1);
    EXPECT_EQ(line.getPaymentMethod(), EFrDriver::FullPrepayment);
    EXPECT_EQ(static_cast<int>(line.getPaymentObject()), 99);
    EXPECT_EQ(line.getExciseMark(), u"e"_s);
    EXPECT_EQ(line.getMarkingCode(), u"m"_s);
    EXPECT_EQ(line.getExciseMarkType(), ExciseMarkType::Tobacco);
    EXPECT_FALSE(line.hasSupplierRequisites());
    EXPECT_EQ(line.getRequisites().value(EFrDriver::AgentSign).getSourceData(), QVariant(32));
    const auto supplier = line.getRequisites().value(EFrDriver::SupplierData).toMap();
    EXPECT_EQ(supplier.value(EFrDriver::SupplierPhone).getSourceData().toString(), u"+7"_s);
    EXPECT_EQ(supplier.value(EFrDriver::SupplierName).getSourceData().toString(), u"ООО"_s);
    ASSERT_EQ(full.payments.size(), 2);
    EXPECT_EQ(full.payments[0].type, 1);
    EXPECT_EQ(full.payments[0].getSum(), 200);
    EXPECT_EQ(full.total(), 200.5);
}

TEST(Receipt, HasTheDefaultsOfAnOrdinarySale)
{
    const Receipt sparse =
        receipt(R"({"id":"a","positions":[{"name":"n","price":1,"quantity":1,"sum":1}],"payments":[]})");
    EXPECT_EQ(sparse.document.getDocumentType(), 0);
    EXPECT_TRUE(sparse.requisites.isEmpty());
    EXPECT_EQ(sparse.taxSystem(), std::nullopt);
    EXPECT_EQ(sparse.total(), 0);
    const FrPosition& line = sparse.positions[0];
    EXPECT_EQ(line.getDiscsum(), 0);
    EXPECT_EQ(line.getTaxCode(), 5);
    EXPECT_EQ(line.getPaymentMethod(), EFrDriver::FullPayment);
    EXPECT_EQ(line.getPaymentObject(), EFrDriver::Commodity);
    EXPECT_EQ(line.getExciseMark(), QString());
    EXPECT_EQ(line.getMarkingCode(), QString());
    EXPECT_EQ(line.getExciseMarkType(), ExciseMarkType::ByForm);
    EXPECT_FALSE(line.hasSupplierRequisites());
}

TEST(Receipt, TakesALineWithASuppliersRequisiteForOneSoldForASupplier)
{
    for (const int tag : {1222, 1224, 1226, 1008}) {
        const Receipt sold =
            receipt(R"({"id":"a","payments":[],"positions":[{"name":"n","price":1,"quantity":1,"sum":1,
            "requisites":[{"tag":)" +
                    QByteArray::number(tag) + R"(,"value":1}]}]})");
        EXPECT_EQ(sold.positions[0].hasSupplierRequisites(), tag != 1008) << tag;
    }
}

} // namespace
