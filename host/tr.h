#pragma once

#include "host/export.h"

#include <QList>
#include <QString>

namespace tr {

/// A message for people: its Russian text, and optionally a translation, a context and further messages.
class HOST_EXPORT Tr
{
public:
    Tr();
    /// A message with a Russian text only.
    explicit Tr(const QString& russianText);
    Tr(const Tr&);
    Tr(Tr&&) noexcept;
    Tr& operator=(const Tr&);
    Tr& operator=(Tr&&) noexcept;
    virtual ~Tr();

    /// The Russian text; empty for a default-constructed message.
    [[nodiscard]] QString ru() const;

private:
    QString russian;
    QString translated;
    QString context;
    QList<Tr> details;
};

} // namespace tr
