#include "host/records/taxsystem.h"

using namespace Qt::Literals::StringLiterals;

namespace hw::fr::common {

QString TaxSystem::getDescription(TaxSystemType type)
{
    switch (type) {
    case TaxSystemType::General:
        return u"Общая"_s;
    case TaxSystemType::SimplifiedIncome:
        return u"Упрощенная (доход)"_s;
    case TaxSystemType::SimplifiedIncomeMinusExpense:
        return u"Упрощенная (доход минус расход)"_s;
    case TaxSystemType::ImputedIncome:
        return u"Единый налог на вмененный доход"_s;
    case TaxSystemType::Agricultural:
        return u"Единый сельскохозяйственный налог"_s;
    case TaxSystemType::Patent:
        return u"Патентная система налогообложения"_s;
    }
    return u"Неизвестная система налогообложения"_s;
}

} // namespace hw::fr::common
