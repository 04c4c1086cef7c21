#pragma once

#include "bench/support/sale.h"
#include "host/records/fiscaldocument.h"
#include "host/records/frpayment.h"
#include "host/records/frposition.h"

#include <QList>

class AbstractFrDriver;

namespace bench {

/// A sale in the host's records.
struct HostSale
{
    explicit HostSale(const Sale& sale);

    FiscalDocument document;
    FdRequisite contact;
    FdRequisite taxSystem;
    QList<FrPosition> positions;
    FrPayment payment;
};

/// Opens a receipt and hands the whole sale to the driver; only closing it is left.
void collect(AbstractFrDriver& driver, const HostSale& sale);

} // namespace bench
