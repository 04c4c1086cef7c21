#include "host/records/efrdriver.h"
#include "host/records/taxsystem.h"

#include <gtest/gtest.h>

namespace {

using hw::fr::common::TaxSystemType;

// The numbers are those of the fiscal data format, or of the host: a plugin has them compiled in.
TEST(Enumerators, HaveTheirNumbers)
{
    const struct
    {
        const char* name;
        int value;
        int number;
    } rows[] = {
        {"FullPrepayment", EFrDriver::FullPrepayment, 1},
        {"Prepayment", EFrDriver::Prepayment, 2},
        {"Advance", EFrDriver::Advance, 3},
        {"FullPayment", EFrDriver::FullPayment, 4},
        {"PartialPayment", EFrDriver::PartialPayment, 5},
        {"Credit", EFrDriver::Credit, 6},
        {"CreditPayment", EFrDriver::CreditPayment, 7},

        {"Commodity", EFrDriver::Commodity, 1},
        {"Excise", EFrDriver::Excise, 2},
        {"Job", EFrDriver::Job, 3},
        {"Service", EFrDriver::Service, 4},
        {"GamblingBet", EFrDriver::GamblingBet, 5},
        {"GamblingPrize", EFrDriver::GamblingPrize, 6},
        {"Lottery", EFrDriver::Lottery, 7},
        {"LotteryPrize", EFrDriver::LotteryPrize, 8},
        {"IntellectualActivity", EFrDriver::IntellectualActivity, 9},
        {"PaymentAsObject", EFrDriver::PaymentAsObject, 10},
        {"AgentCommission", EFrDriver::AgentCommission, 11},
        {"Composite", EFrDriver::Composite, 12},
        {"Another", EFrDriver::Another, 13},

        {"BuyerContact", EFrDriver::BuyerContact, 1008},
        {"AppliedTaxSystem", EFrDriver::AppliedTaxSystem, 1055},
        {"NomenclatureCode", EFrDriver::NomenclatureCode, 1162},
        {"SupplierPhone", EFrDriver::SupplierPhone, 1171},
        {"AdditionalReceiptRequisite", EFrDriver::AdditionalReceiptRequisite, 1192},
        {"AgentSign", EFrDriver::AgentSign, 1222},
        {"SupplierData", EFrDriver::SupplierData, 1224},
        {"SupplierName", EFrDriver::SupplierName, 1225},
        {"SupplierInn", EFrDriver::SupplierInn, 1226},

        {"General", int(TaxSystemType::General), 1},
        {"SimplifiedIncome", int(TaxSystemType::SimplifiedIncome), 2},
        {"SimplifiedIncomeMinusExpense", int(TaxSystemType::SimplifiedIncomeMinusExpense), 4},
        {"ImputedIncome", int(TaxSystemType::ImputedIncome), 8},
        {"Agricultural", int(TaxSystemType::Agricultural), 16},
        {"Patent", int(TaxSystemType::Patent), 32},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.value, row.number) << row.name;
}

} // namespace
