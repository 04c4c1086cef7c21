#include "host/records/fiscalinfo.h"
#include "host/records/frposition.h"
#include "host/records/taxsystem.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using hw::fr::common::TaxSystem;
using hw::fr::common::TaxSystemType;

TEST(Requisites, MissingTagReadsAsZeroAndEmptyText)
{
    const FdRequisite::Map requisites;
    const FdRequisite missing = requisites.value(EFrDriver::AgentSign);
    EXPECT_EQ(missing.getTag(), 0);
    EXPECT_EQ(missing.getSourceData().toInt(), 0);
    EXPECT_EQ(missing.getSourceData().toString(), QString());
    EXPECT_TRUE(missing.toMap().isEmpty());
}

TEST(Requisites, CompositeReturnsItsMembersByTag)
{
    const FdRequisite supplier(EFrDriver::SupplierData,
        FdRequisite::Map{{EFrDriver::SupplierName, FdRequisite(EFrDriver::SupplierName, u"ООО"_s)}});
    EXPECT_EQ(supplier.toMap().value(EFrDriver::SupplierName).getSourceData().toString(), u"ООО"_s);
}

TEST(Position, KeepsTheLastRequisiteOfATag)
{
    FrPosition position;
    position.setRequisite(FdRequisite(EFrDriver::AgentSign, 1));
    position.setRequisite(FdRequisite(EFrDriver::AgentSign, 32));
    ASSERT_EQ(position.getRequisites().size(), 1);
    EXPECT_EQ(position.getRequisites().value(EFrDriver::AgentSign).getSourceData().toInt(), 32);
}

TEST(Position, DescribesItselfInOneLine)
{
    FrPosition position;
    position.setName(u"Молоко"_s);
    position.setPriceWithDisc(80);
    position.setCount(2);
    position.setPossum(160);
    EXPECT_EQ(
        position.toString(), u"Молоко, цена 80.00, количество 2.000, сумма 160.00, скидка 0.00, налог 5"_s);
}

TEST(DefaultRecords, HoldTheValuesForNotSet)
{
    EXPECT_EQ(OfdStatusInfo().state, -1);
    EXPECT_EQ(static_cast<quint64>(FnInfo().documentCount), 0x8000000000000000ULL);
    EXPECT_FALSE(FiscalInfo().dateTime.isValid());
}

TEST(TaxSystem, NamesSingleBitsAndCallsOthersUnknown)
{
    EXPECT_EQ(TaxSystem::getDescription(TaxSystemType::General), u"Общая"_s);
    EXPECT_EQ(TaxSystem::getDescription(TaxSystemType(3)), u"Неизвестная система налогообложения"_s);
}

} // namespace
