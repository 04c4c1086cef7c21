#include "till/receipts/receipt.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QString textOf(const QJsonObject& json, const char* key)
{
    return json.value(QLatin1StringView(key)).toString();
}

int integerOf(const QJsonObject& json, const char* key, int byDefault = 0)
{
    return json.value(QLatin1StringView(key)).toInt(byDefault);
}

double numberOf(const QJsonObject& json, const char* key)
{
    return json.value(QLatin1StringView(key)).toDouble();
}

FdRequisite toRequisite(const QJsonObject& json)
{
    const auto tag = static_cast<EFrDriver::RequisiteTypes>(integerOf(json, "tag"));
    const QJsonValue members = json.value("members"_L1);
    if (members.isArray()) {
        FdRequisite::Map parts;
        for (const QJsonValue& entry : members.toArray()) {
            const FdRequisite part = toRequisite(entry.toObject());
            parts.insert(static_cast<EFrDriver::RequisiteTypes>(part.getTag()), part);
        }
        return {tag, parts};
    }
    const QJsonValue value = json.value("value"_L1);
    return {tag, value.isString() ? QVariant(value.toString()) : QVariant(value.toInt())};
}

QList<FdRequisite> toRequisites(const QJsonValue& json)
{
    QList<FdRequisite> requisites;
    for (const QJsonValue& entry : json.toArray())
        requisites << toRequisite(entry.toObject());
    return requisites;
}

bool namesSupplier(const FdRequisite::Map& requisites)
{
    return requisites.contains(EFrDriver::AgentSign) || requisites.contains(EFrDriver::SupplierData) ||
           requisites.contains(EFrDriver::SupplierInn);
}

FrPosition toPosition(const QJsonObject& json)
{
    FrPosition position;
    position.setName(textOf(json, "name"));
    position.setPriceWithDisc(numberOf(json, "price"));
    position.setCount(numberOf(json, "quantity"));
    position.setPossum(numberOf(json, "sum"));
    position.setDiscsum(numberOf(json, "discount"));
    position.setTaxCode(integerOf(json, "taxCode", 5));
    position.setPaymentMethod(
        static_cast<EFrDriver::PaymentMethod>(integerOf(json, "paymentMethod", EFrDriver::FullPayment)));
    position.setPaymentObject(
        static_cast<EFrDriver::PaymentObject>(integerOf(json, "paymentObject", EFrDriver::Commodity)));
    position.setExciseMark(textOf(json, "exciseMark"));
    position.setMarkingCode(textOf(json, "markingCode"));
    position.setExciseMarkType(static_cast<ExciseMarkType>(integerOf(json, "exciseMarkType")));
    for (const FdRequisite& requisite : toRequisites(json.value("requisites"_L1)))
        position.setRequisite(requisite);
    position.setSupplierRequisites(
        json.value("hasSupplierRequisites"_L1).toBool(namesSupplier(position.getRequisites())));
    return position;
}

} // namespace

QString roubles(double sum)
{
    return QString::number(sum, 'f', 2);
}

bool isTheSameSum(double one, double other)
{
    constexpr double halfKopeck = 0.005;
    return std::abs(one - other) < halfKopeck;
}

double Receipt::total() const
{
    return std::accumulate(payments.begin(), payments.end(), 0.0,
        [](double sum, const FrPayment& payment) { return sum + payment.getSum(); });
}

std::optional<int> Receipt::taxSystem() const
{
    const auto last = std::find_if(requisites.rbegin(), requisites.rend(),
        [](const FdRequisite& requisite) { return requisite.getTag() == EFrDriver::AppliedTaxSystem; });
    return last == requisites.rend() ? std::nullopt : std::optional(last->getSourceData().toInt());
}

Receipt toReceipt(const QJsonObject& json)
{
    Receipt receipt;
    receipt.document.setInternalIdentifier(textOf(json, "id"));
    receipt.document.setDocumentType(integerOf(json, "documentType"));
    receipt.requisites = toRequisites(json.value("requisites"_L1));
    for (const QJsonValue& position : json.value("positions"_L1).toArray())
        receipt.positions << toPosition(position.toObject());
    for (const QJsonValue& payment : json.value("payments"_L1).toArray())
        receipt.payments << FrPayment(
            integerOf(payment.toObject(), "type"), numberOf(payment.toObject(), "sum"));
    return receipt;
}

} // namespace till
