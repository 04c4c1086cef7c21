#pragma once

#include "host/records/efrdriver.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

class FdRequisite
{
public:
    FdRequisite() = default;
    FdRequisite(int tagNumber, const QVariant& value)
        : data(value)
        , tag(tagNumber)
    {
    }

    QByteArray getRawData() const { return data.toByteArray(); }
    QVariant getSourceData() const { return data; }
    QString getDescription() const { return QStringLiteral("N"); }
    int getTag() const { return tag; }
    QMap<EFrDriver::RequisiteTypes, FdRequisite> toMap() const { return members; }

    QMap<EFrDriver::RequisiteTypes, FdRequisite> members;

private:
    QVariant data;
    int tag = 0;
};
