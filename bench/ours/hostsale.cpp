#include "bench/ours/hostsale.h"

#include "host/abstractfrdriver.h"

namespace bench {

namespace {

FrPosition positionOf(const SaleLine& line)
{
    FrPosition position;
    position.setName(line.name);
    position.setPriceWithDisc(line.price);
    position.setCount(line.quantity);
    position.setPossum(line.sum);
    position.setTaxCode(line.taxCode);
    position.setPaymentMethod(EFrDriver::PaymentMethod(line.method + 1));
    position.setPaymentObject(EFrDriver::PaymentObject(line.object + 1));
    return position;
}

} // namespace

HostSale::HostSale(const Sale& sale)
    : document(0, QString::fromLatin1(externalId))
    , contact(EFrDriver::BuyerContact, QString::fromLatin1(buyer))
    , taxSystem(EFrDriver::AppliedTaxSystem, 1)
    , payment(1, sale.total)
{
    for (const SaleLine& line : sale.lines)
        positions.append(positionOf(line));
}

void collect(AbstractFrDriver& driver, const HostSale& sale)
{
    driver.checkOpen(sale.document);
    driver.setRequisite(sale.contact);
    driver.setRequisite(sale.taxSystem);
    for (const FrPosition& position : sale.positions)
        driver.checkAddPosition(position);
    driver.checkPay(sale.payment);
}

} // namespace bench
