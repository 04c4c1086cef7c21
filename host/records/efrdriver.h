#pragma once

/// Enumerations of the host's fiscal-register drivers. The numbers of tags, methods and objects are those of
/// the fiscal data format 1.05; a number without a name may be stored and passed on.
namespace EFrDriver {

/// Payment method of a line (tag 1214).
enum PaymentMethod : int
{
    FullPrepayment = 1,
    Prepayment = 2,
    Advance = 3,
    FullPayment = 4,
    PartialPayment = 5,
    Credit = 6,
    CreditPayment = 7,
};

/// Subject of a line (tag 1212).
enum PaymentObject : int
{
    Commodity = 1,
    Excise = 2,
    Job = 3,
    Service = 4,
    GamblingBet = 5,
    GamblingPrize = 6,
    Lottery = 7,
    LotteryPrize = 8,
    IntellectualActivity = 9,
    PaymentAsObject = 10,
    AgentCommission = 11,
    Composite = 12,
    Another = 13,
};

/// Requisites by tag number.
enum RequisiteTypes : int
{
    /// Telephone or e-mail address of the buyer; text.
    BuyerContact = 1008,
    /// Taxation system applied to the receipt; a hw::fr::common::TaxSystemType.
    AppliedTaxSystem = 1055,
    /// Product code of a marked line; raw bytes.
    NomenclatureCode = 1162,
    /// Telephone of the supplier; text, member of SupplierData.
    SupplierPhone = 1171,
    /// Additional requisite of a receipt; text.
    AdditionalReceiptRequisite = 1192,
    /// Agent type of a line; a single bit.
    AgentSign = 1222,
    /// Supplier of a line; composite of SupplierPhone and SupplierName.
    SupplierData = 1224,
    /// Name of the supplier; text, member of SupplierData.
    SupplierName = 1225,
    /// Taxpayer number of the supplier; text, a requisite of the line itself.
    SupplierInn = 1226,
};

/// How a register is restarted.
enum class RebootMode : int
{
    Soft,
    Hard
};

/// Fonts of a printing register.
enum class FontTypes : int
{
    Normal,
    DoubleWidth,
    DoubleHeight,
    Condensed
};

} // namespace EFrDriver
