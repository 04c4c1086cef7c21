#include "host/records/fdrequisite.h"

using namespace Qt::Literals::StringLiterals;

FdRequisite::FdRequisite() = default;
FdRequisite::FdRequisite(const FdRequisite&) = default;
FdRequisite::FdRequisite(FdRequisite&&) noexcept = default;
FdRequisite& FdRequisite::operator=(const FdRequisite&) = default;
FdRequisite& FdRequisite::operator=(FdRequisite&&) noexcept = default;
FdRequisite::~FdRequisite() = default;

FdRequisite::FdRequisite(EFrDriver::RequisiteTypes type, const QVariant& data)
    : tag(type)
    , sourceData(data)
{
}

FdRequisite::FdRequisite(EFrDriver::RequisiteTypes type, const Map& parts)
    : tag(type)
    , members(parts)
{
}

FdRequisite FdRequisite::fromRawData(EFrDriver::RequisiteTypes type, const QByteArray& bytes)
{
    FdRequisite requisite;
    requisite.tag = type;
    requisite.rawData = bytes;
    return requisite;
}

QString FdRequisite::getDescription() const
{
    switch (tag) {
    case EFrDriver::BuyerContact:
        return u"телефон или электронный адрес покупателя"_s;
    case EFrDriver::AppliedTaxSystem:
        return u"применяемая система налогообложения"_s;
    case EFrDriver::NomenclatureCode:
        return u"код товара"_s;
    case EFrDriver::SupplierPhone:
        return u"телефон поставщика"_s;
    case EFrDriver::AdditionalReceiptRequisite:
        return u"дополнительный реквизит чека"_s;
    case EFrDriver::AgentSign:
        return u"признак агента по предмету расчета"_s;
    case EFrDriver::SupplierData:
        return u"данные поставщика"_s;
    case EFrDriver::SupplierName:
        return u"наименование поставщика"_s;
    case EFrDriver::SupplierInn:
        return u"ИНН поставщика"_s;
    default:
        return {};
    }
}
