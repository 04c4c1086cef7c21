#pragma once

#include "host/export.h"
#include "host/records/efrdriver.h"
#include "host/records/excisemarktype.h"
#include "host/records/fdrequisite.h"

#include <QString>

/// One line of a receipt. Amounts are in roubles.
class HOST_EXPORT FrPosition
{
public:
    FrPosition();
    FrPosition(const FrPosition&);
    FrPosition(FrPosition&&) noexcept;
    FrPosition& operator=(const FrPosition&);
    FrPosition& operator=(FrPosition&&) noexcept;
    ~FrPosition();

    [[nodiscard]] QString getName() const { return name; }
    void setName(const QString& value) { name = value; }

    /// Price of one unit after discount, in roubles.
    [[nodiscard]] double getPriceWithDisc() const { return priceWithDisc; }
    void setPriceWithDisc(double value) { priceWithDisc = value; }

    /// Quantity, in the unit of the line.
    [[nodiscard]] double getCount() const { return count; }
    void setCount(double value) { count = value; }

    /// Sum of the line before discount, in roubles.
    [[nodiscard]] double getPossum() const { return possum; }
    void setPossum(double value) { possum = value; }

    /// Discount on the line, in roubles.
    [[nodiscard]] double getDiscsum() const { return discsum; }
    void setDiscsum(double value) { discsum = value; }

    /// Tax code: 0 VAT 0 %, 1 VAT 10 %, 2 VAT 20 %, 3 VAT 10/110, 4 VAT 20/120, 5 no VAT.
    [[nodiscard]] int getTaxCode() const { return taxCode; }
    void setTaxCode(int value) { taxCode = value; }

    [[nodiscard]] EFrDriver::PaymentMethod getPaymentMethod() const { return paymentMethod; }
    void setPaymentMethod(EFrDriver::PaymentMethod value) { paymentMethod = value; }

    [[nodiscard]] EFrDriver::PaymentObject getPaymentObject() const { return paymentObject; }
    void setPaymentObject(EFrDriver::PaymentObject value) { paymentObject = value; }

    /// Whether the line is sold on behalf of a supplier, regardless of its requisites.
    [[nodiscard]] bool hasSupplierRequisites() const { return supplierRequisites; }
    void setSupplierRequisites(bool value) { supplierRequisites = value; }

    /// Requisites of the line, by tag.
    [[nodiscard]] const FdRequisite::Map& getRequisites() const { return requisites; }
    /// Stores the requisite under its tag, replacing an earlier one.
    void setRequisite(const FdRequisite& requisite);

    /// Excise or marking stamp as the host keeps it; empty for an unmarked line.
    [[nodiscard]] QString getExciseMark() const { return exciseMark; }
    void setExciseMark(const QString& value) { exciseMark = value; }

    /// Marking code as scanned.
    [[nodiscard]] QString getMarkingCode() const { return markingCode; }
    void setMarkingCode(const QString& value) { markingCode = value; }

    [[nodiscard]] ExciseMarkType getExciseMarkType() const { return exciseMarkType; }
    void setExciseMarkType(ExciseMarkType value) { exciseMarkType = value; }

    /// The receipt line as one line of text, for logs: control characters and line breaks in the name become
    /// spaces.
    [[nodiscard]] QString toString() const;

private:
    QString name;
    double priceWithDisc = 0;
    double count = 0;
    double possum = 0;
    double discsum = 0;
    int taxCode = 5;
    EFrDriver::PaymentMethod paymentMethod = EFrDriver::FullPayment;
    EFrDriver::PaymentObject paymentObject = EFrDriver::Commodity;
    bool supplierRequisites = false;
    FdRequisite::Map requisites;
    QString exciseMark;
    QString markingCode;
    ExciseMarkType exciseMarkType = ExciseMarkType::ByForm;
};
