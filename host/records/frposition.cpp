#include "host/records/frposition.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString onOneLine(QString text)
{
    for (QChar& c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            c = u' ';
    }
    return text;
}

} // namespace

FrPosition::FrPosition() = default;
FrPosition::FrPosition(const FrPosition&) = default;
FrPosition::FrPosition(FrPosition&&) noexcept = default;
FrPosition& FrPosition::operator=(const FrPosition&) = default;
FrPosition& FrPosition::operator=(FrPosition&&) noexcept = default;
FrPosition::~FrPosition() = default;

void FrPosition::setRequisite(const FdRequisite& requisite)
{
    requisites.insert(static_cast<EFrDriver::RequisiteTypes>(requisite.getTag()), requisite);
}

QString FrPosition::toString() const
{
    return u"%1, цена %2, количество %3, сумма %4, скидка %5, налог %6"_s.arg(onOneLine(name),
        QString::number(priceWithDisc, 'f', 2), QString::number(count, 'f', 3),
        QString::number(possum, 'f', 2), QString::number(discsum, 'f', 2), QString::number(taxCode));
}
