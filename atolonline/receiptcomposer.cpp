#include "atolonline/receiptcomposer.h"

#include "atolonline/requisitetags.h"
#include "host/records/frutils.h"

#include <QByteArray>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QVariant>

#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace atolonline {

using namespace Qt::Literals::StringLiterals;

namespace {

// The name of a value, where the names begin at 1; the fallback for a value without a name.
template <std::size_t Size>
QLatin1StringView nameOf(int value, const QLatin1StringView (&names)[Size], QLatin1StringView fallback)
{
    return value >= 1 && value <= static_cast<int>(Size) ? names[value - 1] : fallback;
}

// Rounds half away from zero. The thousandth of a kopeck compensates for the binary representation: 1.005 is
// stored as slightly less and has to round up all the same. The fraction is dropped by std::trunc(), because
// the conversion to an integer of 64 bits is undefined for 1e17 roubles and for NaN.
double roundedToKopecks(double amount)
{
    const double sign = amount > 0 ? 1 : amount < 0 ? -1 : 0;
    const double kopecks = std::trunc((amount + sign * 0.005) * 100 + sign * 0.001);
    // Adding zero turns a negative zero, which JSON would show, into zero.
    return kopecks / 100 + 0.0;
}

// Copying an object that already has the keys and assigning its values takes a third of the time that
// inserting them takes. The iterator visits the keys in alphabetical order.
QJsonObject createItem(const FrPosition& position)
{
    static const QJsonObject keys{{u"name"_s, {}}, {u"payment_method"_s, {}}, {u"payment_object"_s, {}},
        {u"price"_s, {}}, {u"quantity"_s, {}}, {u"sum"_s, {}}, {u"vat"_s, {}}};
    QJsonObject item = keys;
    auto value = item.begin();
    *value = position.getName();
    *++value = getPaymentMethodName(position.getPaymentMethod());
    *++value = getPaymentObjectName(position.getPaymentObject());
    *++value = position.getPriceWithDisc();
    *++value = position.getCount();
    *++value = roundedToKopecks(position.getPossum() - position.getDiscsum());
    *++value = getVat(position.getTaxCode());
    addSupplierInfo(item, position);
    addNomenclatureCode(item, position);
    return item;
}

} // namespace

QJsonArray createItems(const QList<FrPosition>& positions)
{
    QJsonArray items;
    for (const FrPosition& position : positions)
        items.append(createItem(position));
    return items;
}

QJsonObject getVat(int taxCode)
{
    const auto vat = [](QLatin1StringView name) { return QJsonObject{{u"type"_s, name}}; };
    static const std::array vats{
        vat("vat0"_L1), vat("vat10"_L1), vat("vat20"_L1), vat("vat110"_L1), vat("vat120"_L1), vat("none"_L1)};
    const auto index = static_cast<std::size_t>(taxCode);
    return taxCode >= 0 && index < vats.size() ? vats[index] : vats[2];
}

QString getPaymentMethodName(EFrDriver::PaymentMethod method)
{
    static constexpr QLatin1StringView names[] = {"full_prepayment"_L1, "prepayment"_L1, "advance"_L1,
        "full_payment"_L1, "partial_payment"_L1, "credit"_L1, "credit_payment"_L1};
    return nameOf(static_cast<int>(method), names, "full_payment"_L1);
}

QString getPaymentObjectName(EFrDriver::PaymentObject object)
{
    static constexpr QLatin1StringView names[] = {"commodity"_L1, "excise"_L1, "job"_L1, "service"_L1,
        "gambling_bet"_L1, "gambling_prize"_L1, "lottery"_L1, "lottery_prize"_L1, "intellectual_activity"_L1,
        "payment"_L1, "agent_commission"_L1, "composite"_L1, "another"_L1};
    return nameOf(static_cast<int>(object), names, "commodity"_L1);
}

void addSupplierInfo(QJsonObject& item, const FrPosition& position)
{
    if (!position.hasSupplierRequisites())
        return;
    const auto& requisites = position.getRequisites();
    item.insert("supplier_info"_L1, getSupplierInfo(requisites));
    item.insert("agent_info"_L1, getAgentInfo(requisites.value(tags::agentSign)));
}

void addNomenclatureCode(QJsonObject& item, const FrPosition& position)
{
    if (position.getExciseMark().isEmpty())
        return;
    const FdRequisite code =
        FrUtils::createNomenclatureCodeRequisite(position.getMarkingCode(), position.getExciseMarkType());
    item.insert("nomenclature_code"_L1, QString::fromLatin1(code.getRawData().toHex(' ').toUpper()));
}

QJsonObject getSupplierInfo(const QMap<EFrDriver::RequisiteTypes, FdRequisite>& requisites)
{
    const auto supplier = requisites.value(tags::supplierData).toMap();
    return {
        {u"phones"_s, QJsonArray{supplier.value(tags::supplierPhone).getSourceData().toString()}},
        {u"name"_s, supplier.value(tags::supplierName).getSourceData().toString()},
        {u"inn"_s, requisites.value(tags::supplierInn).getSourceData().toString()},
    };
}

QJsonObject getAgentInfo(const FdRequisite& agentSign)
{
    return {{u"type"_s, getAgentName(agentSign.getSourceData().toInt())}};
}

QString getAgentName(int agentType)
{
    switch (agentType) {
    case 1:
        return u"bank_paying_agent"_s;
    case 2:
        return u"bank_paying_subagent"_s;
    case 4:
        return u"paying_agent"_s;
    case 8:
        return u"paying_subagent"_s;
    case 16:
        return u"attorney"_s;
    case 32:
        return u"commission_agent"_s;
    case 64:
        return u"another"_s;
    default:
        return {};
    }
}

QJsonArray createPayments(const QMap<int, double>& payments)
{
    QJsonArray array;
    for (auto payment = payments.begin(); payment != payments.end(); ++payment)
        array.append(QJsonObject{{u"type"_s, payment.key()}, {u"sum"_s, payment.value()}});
    if (array.isEmpty())
        array.append(QJsonObject{{u"type"_s, 0}, {u"sum"_s, 0.0}});
    return array;
}

double getTotal(const QMap<int, double>& payments)
{
    double total = 0;
    for (const double sum : payments)
        total += sum;
    return total;
}

QString getSnoName(hw::fr::common::TaxSystemType type)
{
    switch (static_cast<int>(type)) {
    case 2:
        return u"usn_income"_s;
    case 4:
        return u"usn_income_outcome"_s;
    case 8:
        return u"envd"_s;
    case 16:
        return u"esn"_s;
    case 32:
        return u"patent"_s;
    default:
        return u"osn"_s;
    }
}

} // namespace atolonline
