// One whole receipt (collect, compose, one POST, one GET, read the answer) by every contender in turn.

#include "bench/baselines/curlqjson.h"
#include "bench/baselines/qnam.h"
#include "bench/baselines/rawsocket.h"
#include "bench/ours/device.h"
#include "bench/ours/linkeddriver.h"
#include "bench/support/child.h"
#include "bench/support/cores.h"
#include "bench/support/golden.h"
#include "bench/support/quietlog.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

namespace {

using namespace bench;

constexpr int phpBatch = 20;
constexpr int phpBatches = 10;

/// Registers one sale; returns its fiscal sign.
using Register = std::function<std::int64_t()>;
/// A contender at work on sales of so many lines, with a connection of its own.
using Maker = std::function<Register(const Endpoint& endpoint, int lines)>;

template <typename Contender, typename Goods = Sale>
Register make(const Endpoint& endpoint, int lines)
{
    const auto contender = std::make_shared<Contender>(endpoint);
    return [contender, sale = Goods(sampleSale(lines))] { return contender->registerSale(sale); };
}

Register makePhp(const Endpoint& endpoint, int lines)
{
    const auto php = std::make_shared<Php>(endpoint);
    return [php, lines] { return php->registerSales(lines, 1).fiscalSign; };
}

struct Named
{
    const char* name;
    Maker maker;
};

const Named contenders[] = {
    {"plugin", make<Device, HostSale>},
    {"driver", make<LinkedDriver, HostSale>},
    {"curl", make<CurlQJson>},
    {"qnam", make<Qnam>},
    {"raw", make<RawSocket>},
};

struct Ground
{
    const char* name;
    const Responder& responder;
    const Responder& recorder;
};

// What reached a recording responder is compared before anything is timed.
void verify(const Ground& ground, const Named& contender, int lines)
{
    const Endpoint& recorder = ground.recorder.endpoint();
    requireGoldenSale(contender.name, recorder, lines, contender.maker(recorder, lines));
}

std::string title(const char* group, const char* contender, const Ground& ground, int lines)
{
    return std::string(group) + '/' + contender + '/' + ground.name + '/' + std::to_string(lines);
}

void addReceipts(const Ground& ground, int lines)
{
    for (const Named& contender : contenders) {
        verify(ground, contender, lines);
        benchmark::RegisterBenchmark(title("receipt", contender.name, ground, lines).c_str(),
            [sell = contender.maker(ground.responder.endpoint(), lines)](benchmark::State& state) {
                for (auto _ : state)
                    benchmark::DoNotOptimize(sell());
            })
            ->UseRealTime();
    }
}

void addPhp(const Ground& ground, int lines)
{
    verify(ground, {"php", makePhp}, lines);
    const auto php = std::make_shared<Php>(ground.responder.endpoint());
    benchmark::RegisterBenchmark(title("receipt", "php", ground, lines).c_str(),
        [php, lines](benchmark::State& state) {
            for (auto _ : state)
                state.SetIterationTime(php->registerSales(lines, phpBatch).seconds / phpBatch);
        })
        ->UseManualTime()
        ->Iterations(phpBatches);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    quietLog();
    benchmark::Initialize(&argc, argv);
    stayOnCore(0);
    const bool hasPhp = Php::isInstalled();
    const QStringList record{QStringLiteral("--record")};
    using Wire = Responder::Wire;
    const auto apart = Child::Core::OfItsOwn;
    const Responder plain(Wire::Plain, {}, apart);
    const Responder plainRecorder(Wire::Plain, record);
    const Responder tls(Wire::Tls, {}, apart);
    const Responder tlsRecorder(Wire::Tls, record);
    for (const Ground& ground : {Ground{"plain", plain, plainRecorder}, Ground{"tls", tls, tlsRecorder}}) {
        for (const int lines : {1, 10, 100}) {
            addReceipts(ground, lines);
            if (hasPhp)
                addPhp(ground, lines);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::ClearRegisteredBenchmarks();
}
