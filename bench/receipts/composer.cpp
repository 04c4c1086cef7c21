#include "atolonline/commandprocessor.h"
#include "atolonline/compactjson.h"
#include "bench/baselines/qjsonsale.h"
#include "bench/ours/hostsale.h"
#include "bench/receipts/benchmarks.h"
#include "bench/support/golden.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonObject>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

class Composer
{
public:
    explicit Composer(int lines)
        : processor(Log4Qt::LogManager::logger(u"frdriver"_s, u"bench"_s))
        , sale(sampleSale(lines))
    {
        settings.setCompanyEmail(QString::fromLatin1(companyEmail));
        settings.setCompanyInn(QString::fromLatin1(companyInn));
        settings.setPaymentAddress(QString::fromLatin1(paymentAddress));
        processor.setSettings(&settings);
        processor.setClientEmail(QString::fromLatin1(buyer));
    }

    [[nodiscard]] QJsonObject object()
    {
        return {
            {u"receipt"_s, processor.createReceipt(sale.positions, {{1, sale.payment.getSum()}},
                               {{EFrDriver::AppliedTaxSystem, sale.taxSystem}})},
            {u"external_id"_s, sale.document.getInternalIdentifier()},
            {u"timestamp"_s, QString::fromStdString(timestampNow())},
        };
    }

private:
    AtolOnlineSettings settings;
    atolonline::CommandProcessor processor;
    HostSale sale;
};

void addSize(int lines)
{
    const auto composer = std::make_shared<Composer>(lines);
    const auto ours = [composer] { return atolonline::compactJson(composer->object()); };
    const auto baseline = [sale = sampleSale(lines)] { return qjsonText(sale); };
    requireGolden("composer", ours(), lines);
    requireGolden("QJsonObject", baseline(), lines);
    add("compose/ours/" + std::to_string(lines), ours);
    add("compose/qjson/" + std::to_string(lines), baseline);
}

} // namespace

void addComposer()
{
    for (const int lines : {1, 10, 100, 1000, 10000})
        addSize(lines);
}

} // namespace bench
