#include "bench/ours/linkeddriver.h"

#include "bench/ours/trust.h"

using namespace Qt::Literals::StringLiterals;

namespace bench {

LinkedDriver::LinkedDriver(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
{
    trust(endpoint);
    settings.setUrl(QString::fromStdString(endpoint.url()));
    settings.setLogin(u"bench"_s);
    settings.setPassword(u"bench"_s);
    settings.setGroupCode(QString::fromLatin1(groupCode));
    settings.setCompanyEmail(QString::fromLatin1(companyEmail));
    settings.setCompanyInn(QString::fromLatin1(companyInn));
    settings.setPaymentAddress(QString::fromLatin1(paymentAddress));
    driver = std::make_unique<SleeplessDriver>(&settings);
    driver->connect();
}

std::int64_t LinkedDriver::registerSale()
{
    collect(*driver, sale);
    driver->checkClose(sale.document);
    return driver->getFiscalInfo(0, true).fiscalSign.toLongLong();
}

} // namespace bench
