#include "host/tr.h"

namespace tr {

Tr::Tr(const QString& russianText)
    : russian(russianText)
{
}

Tr::Tr() = default;
Tr::Tr(const Tr&) = default;
Tr::Tr(Tr&&) noexcept = default;
Tr& Tr::operator=(const Tr&) = default;
Tr& Tr::operator=(Tr&&) noexcept = default;
Tr::~Tr() = default;

QString Tr::ru() const
{
    return russian;
}

} // namespace tr
