// A receipt's lines to the text that is posted: ours, and the best way of writing it with QJsonObject.

#include "atolonline/commandprocessor.h"
#include "atolonline/compactjson.h"
#include "bench/baselines/qjsonsale.h"
#include "bench/ours/hostsale.h"
#include "bench/support/golden.h"
#include "bench/support/quietlog.h"
#include "host/log/log4qt.h"
#include "plugin/atolonlinesettings.h"

#include <QJsonDocument>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <string>

namespace {

using namespace bench;
using namespace Qt::Literals::StringLiterals;

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

template <typename Work>
void add(const char* name, int lines, const Work& work)
{
    benchmark::RegisterBenchmark((std::string("compose/") + name + '/' + std::to_string(lines)).c_str(),
        [work](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(work());
        });
}

void addSize(int lines)
{
    const auto composer = std::make_shared<Composer>(lines);
    const auto ours = [composer] { return atolonline::compactJson(composer->object()); };
    const auto baseline = [sale = sampleSale(lines)] { return qjsonText(sale); };
    requireGolden("composer", ours(), lines);
    requireGolden("QJsonObject", baseline(), lines);
    add("ours", lines, ours);
    add("qjson", lines, baseline);
}

} // namespace

int main(int argc, char** argv)
{
    quietLog();
    benchmark::Initialize(&argc, argv);
    for (const int lines : {1, 10, 100, 1000, 10000})
        addSize(lines);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::ClearRegisteredBenchmarks();
}
