#pragma once

#include "host/records/efrdriver.h"
#include "host/records/fdrequisite.h"

#include <QMap>
#include <QString>

enum class ExciseMarkType : int;

class FrPosition
{
public:
    FrPosition(const QString& positionName, double price)
        : cost(price)
        , name(positionName)
    {
    }

    QString toString() const { return name; }
    ExciseMarkType getExciseMarkType() const { return ExciseMarkType(0); }
    QString getMarkingCode() const { return mark; }
    QString getExciseMark() const { return mark; }
    const QMap<EFrDriver::RequisiteTypes, FdRequisite>& getRequisites() const { return requisites; }
    bool hasSupplierRequisites() const { return !requisites.isEmpty(); }
    EFrDriver::PaymentObject getPaymentObject() const { return EFrDriver::PaymentObject(4); }
    EFrDriver::PaymentMethod getPaymentMethod() const { return EFrDriver::PaymentMethod(1); }
    int getTaxCode() const { return 5; }
    double getDiscsum() const { return 0; }
    double getPossum() const { return cost; }
    double getCount() const { return 1; }
    double getPriceWithDisc() const { return cost; }
    QString getName() const { return name; }

    QMap<EFrDriver::RequisiteTypes, FdRequisite> requisites;
    QString mark;

private:
    double cost;
    QString name;
};
