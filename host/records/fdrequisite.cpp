#include "host/records/fdrequisite.h"

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
        return QStringLiteral("телефон или электронный адрес покупателя");
    case EFrDriver::AppliedTaxSystem:
        return QStringLiteral("применяемая система налогообложения");
    case EFrDriver::NomenclatureCode:
        return QStringLiteral("код товара");
    case EFrDriver::SupplierPhone:
        return QStringLiteral("телефон поставщика");
    case EFrDriver::AdditionalReceiptRequisite:
        return QStringLiteral("дополнительный реквизит чека");
    case EFrDriver::AgentSign:
        return QStringLiteral("признак агента по предмету расчета");
    case EFrDriver::SupplierData:
        return QStringLiteral("данные поставщика");
    case EFrDriver::SupplierName:
        return QStringLiteral("наименование поставщика");
    case EFrDriver::SupplierInn:
        return QStringLiteral("ИНН поставщика");
    default:
        return {};
    }
}
