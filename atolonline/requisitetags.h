#pragma once

#include "host/records/efrdriver.h"

/// The requisites that a receipt is composed of, by their numbers in the fiscal data format: hosts name them
/// as they like.
namespace atolonline::tags {

/// Telephone or e-mail address of the buyer; text.
constexpr auto buyerContact = EFrDriver::RequisiteTypes(1008);
/// Taxation system applied to the receipt; a hw::fr::common::TaxSystemType.
constexpr auto appliedTaxSystem = EFrDriver::RequisiteTypes(1055);
/// Agent type of a line; a single bit.
constexpr auto agentSign = EFrDriver::RequisiteTypes(1222);
/// Supplier of a line; composite of supplierPhone and supplierName.
constexpr auto supplierData = EFrDriver::RequisiteTypes(1224);
/// Telephone of the supplier; text, member of supplierData.
constexpr auto supplierPhone = EFrDriver::RequisiteTypes(1171);
/// Name of the supplier; text, member of supplierData.
constexpr auto supplierName = EFrDriver::RequisiteTypes(1225);
/// Taxpayer number of the supplier; text, a requisite of the line itself.
constexpr auto supplierInn = EFrDriver::RequisiteTypes(1226);

} // namespace atolonline::tags
