#include "host/records/taxsystem.h"

namespace hw::fr::common {

QString TaxSystem::getDescription(TaxSystemType type)
{
    switch (type) {
    case TaxSystemType::General:
        return QStringLiteral("Общая");
    case TaxSystemType::SimplifiedIncome:
        return QStringLiteral("Упрощенная (доход)");
    case TaxSystemType::SimplifiedIncomeMinusExpense:
        return QStringLiteral("Упрощенная (доход минус расход)");
    case TaxSystemType::ImputedIncome:
        return QStringLiteral("Единый налог на вмененный доход");
    case TaxSystemType::Agricultural:
        return QStringLiteral("Единый сельскохозяйственный налог");
    case TaxSystemType::Patent:
        return QStringLiteral("Патентная система налогообложения");
    }
    return QStringLiteral("Неизвестная система налогообложения");
}

} // namespace hw::fr::common
