#pragma once

#include <QList>
#include <QString>

namespace tr {

class Tr
{
public:
    explicit Tr(const QString& russianText);
    Tr(const Tr&) = default;
    virtual ~Tr();

    QString ru() const;

private:
    QList<Tr> others;
    QString texts[3];
};

} // namespace tr
