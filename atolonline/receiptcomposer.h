#pragma once

#include "host/records/efrdriver.h"
#include "host/records/fdrequisite.h"
#include "host/records/frposition.h"
#include "host/records/taxsystem.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>

/// Composes the JSON of the service's receipt (protocol v4, fiscal data format 1.05) from the host's records.
///
/// Pure functions without state: they log nothing and reject nothing. A value outside a table takes the
/// table's default, a missing requisite reads as empty text; validation is left to the service. Amounts are
/// in roubles.
namespace atolonline {

/// One item for each position, in the order of the list.
///
/// "price" and "quantity" are sent unchanged; "sum" is the sum of the line less its discount, rounded half
/// away from zero to kopecks.
[[nodiscard]] QJsonArray createItems(const QList<FrPosition>& positions);

/// {"type": name} for the host's tax code; "vat20" for a code outside 0 to 5.
[[nodiscard]] QJsonObject getVat(int taxCode);
/// "full_payment" for a method outside 1 to 7.
[[nodiscard]] QString getPaymentMethodName(EFrDriver::PaymentMethod method);
/// "commodity" for an object outside 1 to 13.
[[nodiscard]] QString getPaymentObjectName(EFrDriver::PaymentObject object);

/// Adds "supplier_info" and "agent_info" if the position is sold on behalf of a supplier.
void addSupplierInfo(QJsonObject& item, const FrPosition& position);
/// Adds "nomenclature_code" if the position has an excise mark; the code is built from its marking code.
void addNomenclatureCode(QJsonObject& item, const FrPosition& position);

/// Telephone and name from the members of tag 1224, taxpayer number from tag 1226 of the line itself.
[[nodiscard]] QJsonObject getSupplierInfo(const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites);
/// {"type": name} for the agent sign (tag 1222).
[[nodiscard]] QJsonObject getAgentInfo(const FdRequisite& agentSign);
/// A null text if the value is not one of the seven agent-type bits.
[[nodiscard]] QString getAgentName(int agentType);

/// One payment for each type, in ascending order of types. Without payments, a single one of type 0 and sum
/// 0, because a receipt of the service always has a payment.
[[nodiscard]] QJsonArray createPayments(const QMap<int, double>& payments);
/// Sum of the payments, not rounded.
[[nodiscard]] double getTotal(const QMap<int, double>& payments);
/// "osn" for a value that is not one of the five special taxation systems.
[[nodiscard]] QString getSnoName(hw::fr::common::TaxSystemType type);

} // namespace atolonline
