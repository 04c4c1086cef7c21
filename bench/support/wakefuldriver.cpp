#include "bench/support/wakefuldriver.h"

#include "bench/support/trust.h"

namespace bench {

WakefulDriver::WakefulDriver(const Endpoint& endpoint)
    : driver(filled(settings, endpoint))
{
    driver.connect();
}

AtolOnlineSettings* WakefulDriver::filled(AtolOnlineSettings& settings, const Endpoint& endpoint)
{
    trust(endpoint);
    settings.setUrl(QString::fromStdString(endpoint.url()));
    settings.setLogin(QStringLiteral("bench"));
    settings.setPassword(QStringLiteral("bench"));
    settings.setGroupCode(QString::fromLatin1(groupCode));
    settings.setCompanyEmail(QString::fromLatin1(companyEmail));
    settings.setCompanyInn(QString::fromLatin1(companyInn));
    settings.setPaymentAddress(QString::fromLatin1(paymentAddress));
    return &settings;
}

std::int64_t WakefulDriver::registerSale(const HostSale& sale)
{
    collect(driver, sale);
    driver.checkClose(sale.document);
    return driver.getFiscalInfo(0, true).fiscalSign.toLongLong();
}

} // namespace bench
