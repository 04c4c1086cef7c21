#include "bench/ours/linkeddriver.h"

#include "bench/ours/trust.h"

namespace bench {

LinkedDriver::LinkedDriver(const Endpoint& endpoint)
    : driver(filled(settings, endpoint))
{
    driver.connect();
}

AtolOnlineSettings* LinkedDriver::filled(AtolOnlineSettings& settings, const Endpoint& endpoint)
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

std::int64_t LinkedDriver::registerSale(const HostSale& sale)
{
    collect(driver, sale);
    driver.checkClose(sale.document);
    return driver.getFiscalInfo(0, true).fiscalSign.toLongLong();
}

} // namespace bench
