#include "host/tr.h"

namespace tr {

Tr::Tr(const QString& russianText)
    : russian(russianText)
{
}

Tr::~Tr() = default;

QString Tr::ru() const
{
    return russian;
}

} // namespace tr
