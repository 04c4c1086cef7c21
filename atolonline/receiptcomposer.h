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

/// The host's records as the JSON of the service's receipt (protocol v4, fiscal data format 1.05).
///
/// Pure functions without state: nothing is logged, nothing is refused. A value outside a table takes the
/// table's default, a missing requisite reads as empty text; judging them is the service's work. Amounts are
/// roubles.
namespace atolonline {

/// One item a position, in the list's order.
///
/// "price" and "quantity" are sent as they are; "sum" is the line's sum less its discount, rounded half away
/// from zero to kopecks.
[[nodiscard]] QJsonArray createItems(const QList<FrPosition>& positions);

/// {"type": name} of the host's tax code; "vat20" for a code that is not 0 to 5.
[[nodiscard]] QJsonObject getVat(int taxCode);
/// "full_payment" for a method that is not 1 to 7.
[[nodiscard]] QString getPaymentMethodName(EFrDriver::PaymentMethod method);
/// "commodity" for an object that is not 1 to 13.
[[nodiscard]] QString getPaymentObjectName(EFrDriver::PaymentObject object);

/// Adds "supplier_info" and "agent_info" when the position is sold on behalf of a supplier.
void addSupplierInfo(QJsonObject& item, const FrPosition& position);
/// Adds "nomenclature_code" when the position's excise mark is not empty; the code is built from its marking
/// code.
void addNomenclatureCode(QJsonObject& item, const FrPosition& position);

/// Telephone and name from the members of tag 1224, taxpayer number from tag 1226 of the line itself.
[[nodiscard]] QJsonObject getSupplierInfo(const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites);
/// {"type": name} of the agent sign (tag 1222).
[[nodiscard]] QJsonObject getAgentInfo(const FdRequisite& agentSign);
/// Null text when the value is not one of the seven agent-type bits.
[[nodiscard]] QString getAgentName(int agentType);

/// One payment a type, in ascending order of types; a single payment of type 0 and sum 0 when there are none,
/// because the service's receipt always carries a payment.
[[nodiscard]] QJsonArray createPayments(const QMap<int, double>& payments);
/// Sum of the payments, not rounded.
[[nodiscard]] double getTotal(const QMap<int, double>& payments);
/// "osn" for a value that is not one of the five special taxation systems.
[[nodiscard]] QString getSnoName(hw::fr::common::TaxSystemType type);

} // namespace atolonline
